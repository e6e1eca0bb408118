#include "kvcommands.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>
#include <qpiconfig.h>
#include <variabletext.h>

#include <algorithm>

namespace
{

// Whoever holds a lock on the file must not freeze the panel for long.
const QLatin1String ConnectOptions("QSQLITE_BUSY_TIMEOUT=300");

// Far beyond the longest path of any system: a file that goes on is no file with a path.
constexpr int CommandFileLimit = 1 << 20;

using PacketsByObject = QHash<qint64, QList<KvCommands::PacketInfo>>;

QString readUpToZero(QFile &file)
{
    QByteArray bytes;
    while (bytes.size() < CommandFileLimit && !bytes.contains('\0')) {
        const QByteArray more = file.read(CommandFileLimit - bytes.size());
        if (more.isEmpty())
            break;
        bytes += more;
    }
    const int zero = bytes.indexOf('\0');
    return QString::fromUtf8(zero < 0 ? bytes : bytes.left(zero));
}

/// A query on the default connection, run if that is open. Rows can be visited once, forwards.
QSqlQuery runQuery(const QString &statement, const QVariant &parameter = {})
{
    const QSqlDatabase connection = QSqlDatabase::database(QLatin1String(QSqlDatabase::defaultConnection), false);
    if (!connection.isOpen())
        return QSqlQuery(connection);

    QSqlQuery query(connection);
    query.setForwardOnly(true);
    if (!parameter.isValid()) {
        query.exec(statement);
    } else if (query.prepare(statement)) {
        query.addBindValue(parameter);
        query.exec();
    }
    return query;
}

/// Whether the database looks an object's packets up through an index, which then decides their order.
bool isLookedUpByIndex()
{
    QSqlQuery plan = runQuery(QStringLiteral("EXPLAIN QUERY PLAN SELECT id,name,args_count,flags,command,desc "
                                             "FROM packets WHERE object_id=0"));
    while (plan.next()) {
        if (plan.value(QStringLiteral("detail")).toString().startsWith(QLatin1String("SEARCH")))
            return true;
    }
    return false;
}

// All packets of the table or of the objects asked for, each object's in the order in which a query for this
// object alone gives them: column 0 is the object, then come the packet's columns.

QSqlQuery queryAllPackets()
{
    return runQuery(QStringLiteral("SELECT object_id,id,name,args_count,flags,command,desc FROM packets"));
}

/// The object is the whole number that the table's text or broken number equals for the database, null when
/// there is none. The unary plus takes the type off the number, so that it is compared with the column as a
/// literal would be.
QSqlQuery queryAllPacketsByNumber()
{
    return runQuery(QStringLiteral("SELECT CASE WHEN object_id=+CAST(object_id AS INTEGER) "
                                   "THEN +CAST(object_id AS INTEGER) END,"
                                   "id,name,args_count,flags,command,desc FROM packets"));
}

/// The packets of the objects that \a wanted has as keys.
QSqlQuery queryPacketsByIndex(const PacketsByObject &wanted)
{
    QJsonArray objects;
    for (auto object = wanted.keyBegin(); object != wanted.keyEnd(); ++object)
        objects.append(*object);
    return runQuery(QStringLiteral("SELECT o.value,p.id,p.name,p.args_count,p.flags,p.command,p.desc "
                                   "FROM json_each(?) AS o CROSS JOIN packets AS p WHERE p.object_id=+o.value"),
                    QString::fromUtf8(QJsonDocument(objects).toJson(QJsonDocument::Compact)));
}

/// Appends the packet of the present row. It is made where it stays: there are many.
void appendPacket(QList<KvCommands::PacketInfo> &packets, const QSqlQuery &row)
{
    packets.append(KvCommands::PacketInfo());
    KvCommands::PacketInfo &packet = packets.last();
    packet.id = row.value(1).toInt();
    packet.flags = row.value(4).toInt();
    packet.name = row.value(2).toString();
    packet.command = row.value(5).toString();
    packet.desc = row.value(6).toString();
}

/// Sorts the packets of \a rows into \a byObject, which has the wanted objects as keys. Ends with false at an
/// object that is neither null nor a whole number.
bool sortPackets(QSqlQuery rows, PacketsByObject &byObject)
{
    auto found = byObject.end();
    while (rows.next()) {
        const QVariant object = rows.value(0);
        if (object.type() != QVariant::LongLong) {
            if (object.isNull())
                continue;
            return false;
        }
        // An object's packets mostly stand together.
        const qint64 id = object.toLongLong();
        if (found == byObject.end() || found.key() != id)
            found = byObject.find(id);
        if (found != byObject.end())
            appendPacket(*found, rows);
    }
    return true;
}

} // namespace

KvCommands::KvCommands(const QString &path)
{
    setDatabase(path);
}

void KvCommands::setDatabase(const QString &path)
{
    if (path.isEmpty() || !QFileInfo(path).isFile())
        return;
    openDatabase(path);
    read();
}

void KvCommands::openDatabase(const QString &path)
{
    // Let go of the old connection before it is replaced: nobody's query is running on it now.
    database = QSqlDatabase();
    const QString name = QLatin1String(QSqlDatabase::defaultConnection);
    if (QSqlDatabase::contains(name))
        QSqlDatabase::removeDatabase(name);

    database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"));
    database.setConnectOptions(ConnectOptions);
    database.setDatabaseName(path);
    database.open();
}

void KvCommands::openFromArgs(const QString &prefix)
{
    if (database.isOpen() || prefix.isEmpty() || QCoreApplication::instance() == nullptr)
        return;

    const QStringList arguments = QCoreApplication::arguments();
    for (const QString &argument : arguments) {
        if (argument.startsWith(prefix)) {
            setDatabase(argument.mid(prefix.size()));
            return;
        }
    }
}

void KvCommands::openFromCmdFile(const QString &file)
{
    if (database.isOpen())
        return;

    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        return;
    const QString path = readUpToZero(source);
    if (!path.isEmpty())
        setDatabase(path);
}

void KvCommands::read()
{
    devices.clear();
    packets.clear();
    variables.clear();

    readDevices();
    readPackets();
    // A file that could not be opened as a database may still have its variables beside it; a
    // catalogue that was closed has none.
    if (database.isOpen() || database.isOpenError())
        readVariables();
}

void KvCommands::closeDatabase()
{
    database.close();
}

bool KvCommands::hasObject(const QString &object) const
{
    return std::any_of(devices.cbegin(), devices.cend(),
                       [&object](const DeviceInfo &device) { return device.name == object; });
}

bool KvCommands::hasPacket(const QString &object, const QString &packet) const
{
    if (!hasObject(object))
        return false;
    const QList<PacketInfo> ofObject = packets.value(object);
    return std::any_of(ofObject.cbegin(), ofObject.cend(),
                       [&packet](const PacketInfo &info) { return info.name == packet; });
}

void KvCommands::readDevices()
{
    QSqlQuery rows = runQuery(QStringLiteral("SELECT p.object_id AS id, p.value AS name, d.name AS devname, "
                                             "d.vname AS vendor, d.gname AS group_, d.desc AS description "
                                             "FROM devices AS d,properties AS p "
                                             "WHERE d.id=p.device_id AND p.name='name'"));
    while (rows.next()) {
        devices.append({rows.value(0).toInt(), rows.value(1).toString(), rows.value(2).toString(),
                        rows.value(3).toString(), rows.value(4).toString(), rows.value(5).toString()});
    }
}

void KvCommands::readPackets()
{
    if (devices.isEmpty())
        return;

    PacketsByObject byObject;
    for (const DeviceInfo &device : qAsConst(devices))
        byObject.insert(device.id, {});

    // One pass over the packets instead of a query per object. Objects are nearly always whole numbers; to
    // have the database tell what else is one takes longer.
    const PacketsByObject none = byObject;
    if (isLookedUpByIndex()) {
        sortPackets(queryPacketsByIndex(none), byObject);
    } else if (!sortPackets(queryAllPackets(), byObject)) {
        byObject = none;
        sortPackets(queryAllPacketsByNumber(), byObject);
    }

    for (const DeviceInfo &device : qAsConst(devices))
        packets[device.name] += byObject.value(device.id);
}

void KvCommands::readVariables()
{
    const QFileInfo file(database.databaseName());
    const QString path = file.path() + QLatin1Char('/') + file.baseName() + QLatin1String(".var");
    qDebug() << path;

    const QPIConfig config(path);
    const QList<QPIConfig::Leaf> leaves = config.allLeaves();
    for (const QPIConfig::Leaf &leaf : leaves)
        variables.append({leaf.name(), splitVar(leaf.value()).second});
}
