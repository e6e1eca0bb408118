// Reading a catalogue of 100 objects with 100 packets each, beside a loop over a driver's rows and a
// loop on SQLite itself that make the same strings.

#include "comparison.h"

#include <QCoreApplication>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QVariant>
#include <kvcommands.h>

#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>

namespace
{

constexpr int Objects = 100;
constexpr int PacketsPerObject = 100;
constexpr int Packets = Objects * PacketsPerObject;

void require(bool holds, const char *what)
{
    if (!holds) {
        std::fprintf(stderr, "bench_catalogue: %s\n", what);
        std::exit(1);
    }
}

void run(const QString &statement)
{
    QSqlQuery query(statement);
    require(!query.lastError().isValid(), qPrintable(query.lastError().text()));
}

void makeCatalogue(const QString &path)
{
    QSqlDatabase connection = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"));
    connection.setDatabaseName(path);
    require(connection.open(), "no database");
    run(QStringLiteral(
        "CREATE TABLE devices (id INTEGER PRIMARY KEY, name TEXT, vname TEXT, gname TEXT, \"desc\" TEXT)"));
    run(QStringLiteral("CREATE TABLE properties (object_id INTEGER, device_id INTEGER, name TEXT, value TEXT)"));
    run(QStringLiteral("CREATE TABLE packets (id INTEGER PRIMARY KEY, name TEXT, args_count INTEGER, flags INTEGER, "
                       "command TEXT, \"desc\" TEXT, object_id INTEGER)"));
    run(QStringLiteral("INSERT INTO devices VALUES (1,'Relay','Acme','Power','Two relays')"));
    run(QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<%1) INSERT INTO "
                       "properties SELECT i,1,'name','object '||i FROM n")
            .arg(Objects));
    run(QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i+1 FROM n WHERE i<%1) INSERT INTO packets "
                       "SELECT i,'packet '||i,1,i%4,'AA %(word~)[speed]0 . \"Hi\" '||i,'Sets the speed of motor '||i,"
                       "i/%2+1 FROM n")
            .arg(Packets - 1)
            .arg(PacketsPerObject));
}

/// The same cells through the driver, kept in one flat list.
void readWithDriver()
{
    QList<KvCommands::PacketInfo> packets;
    QSqlQuery query;
    query.setForwardOnly(true);
    query.exec(QStringLiteral("SELECT object_id,id,name,args_count,flags,command,desc FROM packets"));
    while (query.next()) {
        packets.append({query.value(1).toInt(), query.value(4).toInt(), query.value(2).toString(),
                        query.value(5).toString(), query.value(6).toString()});
    }
    require(packets.size() == Packets, "the driver's loop lost packets");
}

QString text(sqlite3_stmt *statement, int column)
{
    return QString::fromUtf16(static_cast<const ushort *>(sqlite3_column_text16(statement, column)),
                              sqlite3_column_bytes16(statement, column) / 2);
}

/// The same cells from SQLite itself, kept in one flat list.
void readBare(sqlite3 *connection)
{
    QList<KvCommands::PacketInfo> packets;
    sqlite3_stmt *statement = nullptr;
    sqlite3_prepare_v2(connection, "SELECT object_id,id,name,args_count,flags,command,desc FROM packets", -1,
                       &statement, nullptr);
    while (sqlite3_step(statement) == SQLITE_ROW) {
        packets.append({sqlite3_column_int(statement, 1), sqlite3_column_int(statement, 4), text(statement, 2),
                        text(statement, 5), text(statement, 6)});
    }
    sqlite3_finalize(statement);
    require(packets.size() == Packets, "the bare loop lost packets");
}

void readAsCatalogue(KvCommands &catalogue)
{
    catalogue.read();
    require(catalogue.packets.size() == Objects, "the catalogue lost objects");
    require(catalogue.packets.value(QStringLiteral("object 7")).size() == PacketsPerObject,
            "the catalogue lost packets");
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("cat.sqlite"));
    makeCatalogue(path);

    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {}); // a line for each reading
    KvCommands catalogue(path);
    sqlite3 *bare = nullptr;
    require(sqlite3_open(path.toUtf8().constData(), &bare) == SQLITE_OK, "no second connection");

    const Contender ours{"KvCommands::read", [&] { readAsCatalogue(catalogue); }};
    compare("10,000 packets", ours, {"loop over QSqlQuery", readWithDriver});
    compare("10,000 packets", ours, {"loop over sqlite3", [bare] { readBare(bare); }});
    const int status = runComparisons(argc, argv);
    sqlite3_close(bare);
    return status;
}
