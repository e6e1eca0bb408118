#include "tempcatalogue.h"

#include <QFile>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>

namespace
{

const char *const Tables[] = {
    "CREATE TABLE devices (id INTEGER PRIMARY KEY, name TEXT, vendor INTEGER, vname TEXT, gname TEXT, \"desc\" TEXT)",
    "CREATE TABLE properties (object_id INTEGER, device_id INTEGER, name TEXT, value TEXT)",
    "CREATE TABLE packets (id INTEGER PRIMARY KEY, name TEXT, args_count INTEGER, flags INTEGER, command TEXT, "
    "\"desc\" TEXT, object_id INTEGER)",
    "CREATE TABLE current (id INTEGER PRIMARY KEY, device INTEGER, name TEXT, device_id INTEGER)",
    "CREATE TABLE vendors (id INTEGER PRIMARY KEY, name TEXT)",
    "CREATE TABLE commands (id INTEGER, command TEXT, description TEXT, device INTEGER)",
    "CREATE TABLE answers (id INTEGER, command TEXT, description TEXT, device INTEGER)",
};

} // namespace

TempCatalogue::TempCatalogue()
    : m_connection(QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QUuid::createUuid().toString()))
{
    m_connection.setDatabaseName(path());
    if (!m_connection.open())
        qFatal("no catalogue at %s", qPrintable(path()));
    run(QStringLiteral("PRAGMA synchronous=OFF"));
    for (const char *table : Tables)
        run(QString::fromLatin1(table));
}

TempCatalogue::~TempCatalogue()
{
    const QString name = m_connection.connectionName();
    m_connection.close();
    m_connection = QSqlDatabase();
    QSqlDatabase::removeDatabase(name);
}

QString TempCatalogue::path() const
{
    return filePath(QStringLiteral("cat.sqlite"));
}

QString TempCatalogue::filePath(const QString &name) const
{
    return m_dir.filePath(name);
}

void TempCatalogue::writeFile(const QString &name, const QByteArray &content) const
{
    QFile file(filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(file.fileName()));
}

void TempCatalogue::writeVariables(const QByteArray &content) const
{
    writeFile(QStringLiteral("cat.var"), content);
}

void TempCatalogue::run(const QString &statement, const QVariantList &values)
{
    QSqlQuery query(m_connection);
    bool done = query.prepare(statement);
    for (const QVariant &value : values)
        query.addBindValue(value);
    done = done && query.exec();
    if (!done)
        qFatal("%s: %s", qPrintable(statement), qPrintable(query.lastError().text()));
}

void TempCatalogue::addDevice(int id, const QString &name, int vendor, const QString &vname, const QString &gname,
                              const QString &desc)
{
    run(QStringLiteral("INSERT INTO devices (id,name,vendor,vname,gname,\"desc\") VALUES (?,?,?,?,?,?)"),
        {id, name, vendor, vname, gname, desc});
}

void TempCatalogue::addObject(const QVariant &objectId, int deviceId, const QVariant &name)
{
    run(QStringLiteral("INSERT INTO properties (object_id,device_id,name,value) VALUES (?,?,'name',?)"),
        {objectId, deviceId, name});
}

void TempCatalogue::addPacket(int id, int objectId, const QString &name, const QString &command, int flags,
                              const QString &desc, int argumentsCount)
{
    run(QStringLiteral("INSERT INTO packets (id,object_id,name,command,flags,\"desc\",args_count) "
                       "VALUES (?,?,?,?,?,?,?)"),
        {id, objectId, name, command, flags, desc, argumentsCount});
}

void TempCatalogue::addVendor(int id, const QString &name)
{
    run(QStringLiteral("INSERT INTO vendors (id,name) VALUES (?,?)"), {id, name});
}

void TempCatalogue::addCurrent(int id, int device, const QString &name, int deviceId)
{
    run(QStringLiteral("INSERT INTO current (id,device,name,device_id) VALUES (?,?,?,?)"),
        {id, device, name, deviceId});
}

void TempCatalogue::addCommand(int id, int device, const QString &command, const QString &description)
{
    run(QStringLiteral("INSERT INTO commands (id,device,command,description) VALUES (?,?,?,?)"),
        {id, device, command, description});
}

void TempCatalogue::addAnswer(int id, int device, const QString &command, const QString &description)
{
    run(QStringLiteral("INSERT INTO answers (id,device,command,description) VALUES (?,?,?,?)"),
        {id, device, command, description});
}

void TempCatalogue::fillSmall()
{
    addDevice(1, QStringLiteral("Relay"));
    addObject(10, 1, QStringLiteral("hall"));
    addPacket(100, 10, QStringLiteral("on"), QStringLiteral("01 FF"));
    writeVariables("t = float{10 m}\n");
}
