#include "hugecatalogue.h"

#include "comparison.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace
{

constexpr int Objects = 100;
const QString ConnectionName = QStringLiteral("huge catalogue");

const char *const Statements[] = {
    "CREATE TABLE devices (id INTEGER PRIMARY KEY, name TEXT, vendor INTEGER, vname TEXT, gname TEXT, \"desc\" TEXT)",
    "CREATE TABLE properties (object_id INTEGER, device_id INTEGER, name TEXT, value TEXT)",
    "CREATE TABLE packets (id INTEGER PRIMARY KEY, name TEXT, args_count INTEGER, flags INTEGER, command TEXT, "
    "\"desc\" TEXT, object_id INTEGER)",
    "CREATE TABLE current (id INTEGER PRIMARY KEY, device INTEGER, name TEXT, device_id INTEGER)",
    "CREATE TABLE vendors (id INTEGER PRIMARY KEY, name TEXT)",
    "CREATE TABLE commands (id INTEGER, command TEXT, description TEXT, device INTEGER)",
    "CREATE TABLE answers (id INTEGER, command TEXT, description TEXT, device INTEGER)",
    "INSERT INTO devices VALUES (1,'Relay',1,'Acme','Power','Two relays')",
    "INSERT INTO current VALUES (1,1,'hall',5)",
    "INSERT INTO vendors VALUES (1,'Acme')",
    "INSERT INTO commands VALUES (1,'A1 %id 01','switches on',1)",
    "INSERT INTO answers VALUES (1,'A2 %id 01','is on',1)",
};

void run(const QString &statement)
{
    QSqlQuery query(statement, QSqlDatabase::database(ConnectionName));
    require(!query.lastError().isValid(), query.lastError().text().toStdString());
}

} // namespace

void makeHugeCatalogue(const QString &path)
{
    {
        QSqlDatabase connection = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), ConnectionName);
        connection.setDatabaseName(path);
        require(connection.open(), "no database");
        for (const char *statement : Statements)
            run(QString::fromLatin1(statement));
        run(QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<%1) INSERT INTO "
                           "properties SELECT i,1,'name','object '||i FROM n")
                .arg(Objects));
        run(QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i+1 FROM n WHERE i<%1) INSERT INTO "
                           "packets SELECT i,'packet '||i,1,i%4,'AA %(word~)[speed]0 . \"Hi\" '||i,"
                           "'Sets the speed of motor '||i,i/%2+1 FROM n")
                .arg(HugeCataloguePackets - 1)
                .arg(HugeCataloguePackets / Objects));
    }
    QSqlDatabase::removeDatabase(ConnectionName);
}
