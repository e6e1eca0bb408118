// Reading a catalogue of 100 objects with 100 packets each, beside a loop over a driver's rows and a
// loop on SQLite itself that make the same strings.

#include "comparison.h"
#include "hugecatalogue.h"
#include "subjects.h"

#include <QSqlQuery>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>
#include <kvcommands.h>

#include <sqlite3.h>

#include <memory>

namespace
{

using Packet = KvCommands::PacketInfo;

/// The same cells through the driver, kept in one flat list. The object's number is read as well, since it
/// is what read() sorts the packets by.
QList<Packet> readWithDriver()
{
    QList<Packet> packets;
    qint64 objects = 0;
    QSqlQuery query;
    query.setForwardOnly(true);
    query.exec(QStringLiteral("SELECT object_id,id,name,args_count,flags,command,desc FROM packets"));
    while (query.next()) {
        objects += query.value(0).toLongLong();
        packets.append({query.value(1).toInt(), query.value(4).toInt(), query.value(2).toString(),
                        query.value(5).toString(), query.value(6).toString()});
    }
    require(objects > 0, "packets of no object");
    return packets;
}

QString text(sqlite3_stmt *statement, int column)
{
    return QString::fromUtf16(static_cast<const ushort *>(sqlite3_column_text16(statement, column)),
                              sqlite3_column_bytes16(statement, column) / 2);
}

/// The same cells from SQLite itself, kept in one flat list.
QList<Packet> readBare(sqlite3 *connection)
{
    QList<Packet> packets;
    qint64 objects = 0;
    sqlite3_stmt *statement = nullptr;
    sqlite3_prepare_v2(connection, "SELECT object_id,id,name,args_count,flags,command,desc FROM packets", -1,
                       &statement, nullptr);
    while (sqlite3_step(statement) == SQLITE_ROW) {
        objects += sqlite3_column_int64(statement, 0);
        packets.append({sqlite3_column_int(statement, 1), sqlite3_column_int(statement, 4), text(statement, 2),
                        text(statement, 5), text(statement, 6)});
    }
    sqlite3_finalize(statement);
    require(objects > 0, "packets of no object");
    return packets;
}

/// All cells of \a packets by number, whatever their order was.
std::string inWords(const QList<Packet> &packets)
{
    QMap<int, QString> lines;
    for (const Packet &packet : packets)
        lines[packet.id] =
            QStringLiteral("%1 %2 %3 %4").arg(QString::number(packet.flags), packet.name, packet.command, packet.desc);
    require(packets.size() == HugeCataloguePackets && lines.size() == HugeCataloguePackets,
            "a loop over the catalogue lost packets");
    return QStringList(lines.values()).join(QLatin1Char('\n')).toStdString();
}

/// A catalogue that is open in all three ways.
class OpenCatalogue
{
public:
    OpenCatalogue()
        : m_path(m_folder.filePath(QStringLiteral("cat.sqlite")))
    {
        makeHugeCatalogue(m_path);
        m_catalogue.setDatabase(m_path);
        require(sqlite3_open(m_path.toUtf8().constData(), &m_bare) == SQLITE_OK, "no second connection");
    }
    ~OpenCatalogue()
    {
        sqlite3_close(m_bare);
        m_catalogue.closeDatabase();
    }
    OpenCatalogue(const OpenCatalogue &) = delete;
    OpenCatalogue &operator=(const OpenCatalogue &) = delete;

    KvCommands &catalogue() { return m_catalogue; }
    sqlite3 *bare() const { return m_bare; }

    QList<Packet> allPackets() const
    {
        QList<Packet> all;
        for (const QList<Packet> &ofObject : m_catalogue.packets)
            all += ofObject;
        return all;
    }

private:
    QTemporaryDir m_folder;
    QString m_path;
    KvCommands m_catalogue{QString()};
    sqlite3 *m_bare = nullptr;
};

} // namespace

void benchCatalogue()
{
    const auto open = std::make_shared<OpenCatalogue>();
    const Contender ours{"KvCommands::read", [open] { open->catalogue().read(); }, 1,
                         [open] { return inWords(open->allPackets()); }};
    const Contender driver{"loop over QSqlQuery", [] { readWithDriver(); }, 1,
                           [] { return inWords(readWithDriver()); }};
    const Contender bare{"loop over sqlite3", [open] { readBare(open->bare()); }, 1,
                         [open] { return inWords(readBare(open->bare())); }};
    compare("10,000 packets", ours, driver, 1.1);
    compare("10,000 packets", ours, bare);
}
