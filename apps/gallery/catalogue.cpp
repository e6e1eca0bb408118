#include "catalogue.h"

#include <QSqlDatabase>
#include <QSqlQuery>

bool openGalleryCatalogue()
{
    static const char *const Statements[] = {
        "CREATE TABLE current (id INTEGER, device INTEGER, name TEXT, device_id INTEGER)",
        "CREATE TABLE devices (id INTEGER, name TEXT, vendor INTEGER)",
        "CREATE TABLE vendors (id INTEGER, name TEXT)",
        "CREATE TABLE commands (id INTEGER, command TEXT, description TEXT, device INTEGER)",
        "CREATE TABLE answers (id INTEGER, command TEXT, description TEXT, device INTEGER)",
        "INSERT INTO vendors VALUES (1, 'Example')",
        "INSERT INTO devices VALUES (1, 'Relay', 1)",
        "INSERT INTO current VALUES (1, 1, 'Hall', 7)",
        "INSERT INTO commands VALUES (1, '01 05 a0', 'switch', 1)",
        "INSERT INTO commands VALUES (2, '01 03', 'ask', 1)",
        "INSERT INTO answers VALUES (1, '01 05 01', 'on', 1)",
        "INSERT INTO answers VALUES (2, '01 05 00', 'off', 1)",
    };

    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"));
    database.setDatabaseName(QStringLiteral(":memory:"));
    if (!database.open())
        return false;
    QSqlQuery query(database);
    for (const char *statement : Statements) {
        if (!query.exec(QString::fromLatin1(statement)))
            return false;
    }
    return true;
}
