#include "catalogue.h"

#include "command.h"

#include <kelglobals.h>

#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>

namespace
{

/// A connection of its own to \a path, gone with this object.
class Connection
{
public:
    Connection(const QString &path, const QString &options)
    {
        m_database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("kel catalogue"));
        m_database.setConnectOptions(options);
        m_database.setDatabaseName(path);
        m_isOpen = m_database.open();
    }
    ~Connection()
    {
        const QString name = m_database.connectionName();
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(name);
    }
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    bool isOpen() const { return m_isOpen; }
    QSqlDatabase &database() { return m_database; }

private:
    QSqlDatabase m_database;
    bool m_isOpen = false;
};

[[noreturn]] void fail(const QString &file, const QString &what)
{
    throw CommandError(QStringLiteral("%1: %2").arg(file, what.simplified()));
}

QString reasonOf(const QSqlError &error)
{
    constexpr int SqliteBusy = 5;
    constexpr int SqliteLocked = 6;
    const int code = error.nativeErrorCode().toInt() & 0xFF;
    if (code == SqliteBusy || code == SqliteLocked)
        return QStringLiteral("the catalogue is locked by another program");
    return QStringLiteral("not a readable catalogue (%1)").arg(error.databaseText());
}

/// The first line of SQLite's own check of the file's structure; "ok" when there is nothing to say.
void checkStructure(const QString &path, QSqlDatabase &database)
{
    QSqlQuery check(database);
    if (!check.exec(QStringLiteral("PRAGMA quick_check(1)")) || !check.next())
        fail(path, reasonOf(check.lastError()));
    const QString result = check.value(0).toString();
    if (result != QLatin1String("ok"))
        fail(path, QStringLiteral("the catalogue is damaged (%1)").arg(result));
}

void checkCatalogue(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        fail(path, QStringLiteral("there is no such catalogue"));
    if (!info.isFile())
        fail(path, QStringLiteral("the catalogue is not a file"));
    if (!info.isReadable())
        fail(path, QStringLiteral("the catalogue may not be read"));

    Connection connection(path, QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_BUSY_TIMEOUT=200"));
    if (!connection.isOpen())
        fail(path, reasonOf(connection.database().lastError()));
    checkStructure(path, connection.database());
    if (!connection.database().tables().contains(QStringLiteral("devices")))
        fail(path, QStringLiteral("not a catalogue: it has no table \"devices\""));
}

QStringList statementsOf(const QString &source)
{
    QFile file(source);
    if (!file.open(QIODevice::ReadOnly))
        fail(source, file.errorString());
    QStringList statements(QString{});
    for (const QString &line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
        if (line.trimmed().startsWith(QLatin1String("--")))
            continue;
        statements.last() += line + QLatin1Char('\n');
        if (line.trimmed().endsWith(QLatin1Char(';')))
            statements.append(QString());
    }
    if (statements.last().trimmed().isEmpty())
        statements.removeLast();
    return statements;
}

} // namespace

void openCatalogue(const QString &path)
{
    checkCatalogue(path);
    Kel::commandsDB.setDatabase(path);
    if (!Kel::commandsDB.database.isOpen())
        fail(path, reasonOf(Kel::commandsDB.database.lastError()));
}

void makeCatalogue(const QString &source, const QString &path)
{
    const QStringList statements = statementsOf(source);
    QString problem;
    QFile::remove(path);
    {
        Connection connection(path, QString());
        if (!connection.isOpen())
            fail(path, connection.database().lastError().databaseText());
        QSqlQuery query(connection.database());
        connection.database().transaction();
        for (const QString &statement : statements) {
            if (problem.isEmpty() && !query.exec(statement))
                problem = QStringLiteral("%1 in \"%2\"")
                              .arg(query.lastError().databaseText(), statement.simplified().left(60));
        }
        if (problem.isEmpty() && !connection.database().commit())
            problem = connection.database().lastError().databaseText();
    }
    if (problem.isEmpty())
        return;
    QFile::remove(path);
    fail(source, problem);
}
