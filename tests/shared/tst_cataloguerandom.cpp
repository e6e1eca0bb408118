#include "tempcatalogue.h"
#include "testmain.h"

#include <QSqlQuery>
#include <kvcommands.h>

#include <random>

// The catalogue is read in a few statements; a reader that asks for each object's packets on its own
// must come to the same lists, whatever the tables look like.
class tst_CatalogueRandom : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsAsObjectByObject_data();
    void readsAsObjectByObject();
};

namespace
{

constexpr int CataloguesPerTable = 25;

using Lists = QPair<QStringList, QMap<QString, QStringList>>;

QString described(const KvCommands::DeviceInfo &device)
{
    return QStringList({QString::number(device.id), device.name, device.devname, device.vendor, device.group,
                        device.description})
        .join('|');
}

QString described(const KvCommands::PacketInfo &packet)
{
    return QStringList(
               {QString::number(packet.id), QString::number(packet.flags), packet.name, packet.command, packet.desc})
        .join('|');
}

Lists listsOf(const KvCommands &catalogue)
{
    Lists lists;
    for (const KvCommands::DeviceInfo &device : catalogue.devices)
        lists.first << described(device);
    for (auto entry = catalogue.packets.begin(); entry != catalogue.packets.end(); ++entry) {
        QStringList &list = lists.second[entry.key()];
        for (const KvCommands::PacketInfo &packet : entry.value())
            list << described(packet);
    }
    return lists;
}

Lists readObjectByObject()
{
    KvCommands lists;
    QSqlQuery rows(QStringLiteral("SELECT p.object_id AS id, p.value AS name, d.name AS devname, d.vname AS vendor, "
                                  "d.gname AS group_, d.desc AS description FROM devices AS d,properties AS p "
                                  "WHERE d.id=p.device_id AND p.name='name'"));
    while (rows.next()) {
        const KvCommands::DeviceInfo device{rows.value("id").toInt(),         rows.value("name").toString(),
                                            rows.value("devname").toString(), rows.value("vendor").toString(),
                                            rows.value("group_").toString(),  rows.value("description").toString()};
        lists.devices << device;
        QList<KvCommands::PacketInfo> &packets = lists.packets[device.name];
        QSqlQuery own(QStringLiteral("SELECT id,name,args_count,flags,command,desc FROM packets WHERE object_id=%1")
                          .arg(device.id));
        while (own.next()) {
            packets << KvCommands::PacketInfo{own.value("id").toInt(), own.value("flags").toInt(),
                                              own.value("name").toString(), own.value("command").toString(),
                                              own.value("desc").toString()};
        }
    }
    return listsOf(lists);
}

class Generator
{
public:
    explicit Generator(unsigned seed)
        : m_random(seed)
    {
    }

    int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(m_random); }

    // Numbers of objects as people and programs leave them in a table without strict types.
    QVariant objectId()
    {
        const int id = below(12) - 2;
        switch (below(12)) {
        case 0:
            return QVariant();
        case 1:
            return QString::number(id);
        case 2:
            return QStringLiteral(" %1").arg(id);
        case 3:
            return QStringLiteral("0%1").arg(id);
        case 4:
            return id + 0.5;
        case 5:
            return double(id);
        case 6:
            return QByteArray::number(id);
        case 7:
            return QStringLiteral("%1x").arg(id);
        case 8:
            return qint64(id) + (qint64(1) << 32);
        case 9:
            return 9.3e18;
        default:
            return id;
        }
    }

    QVariant text()
    {
        static const QVariantList Texts{
            QVariant(), QString(""), QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("дом"),
            7,          1.5,         QByteArray("c")};
        return Texts.at(below(Texts.size()));
    }

private:
    std::mt19937 m_random;
};

void fill(TempCatalogue &file, Generator &random)
{
    file.run(QStringLiteral("BEGIN"));
    for (int i = random.below(4); i >= 0; --i)
        file.run(QStringLiteral("INSERT INTO devices (name,vname,gname,\"desc\") VALUES (?,?,?,?)"),
                 {random.text(), random.text(), random.text(), random.text()});
    for (int i = random.below(12); i > 0; --i) {
        file.run(QStringLiteral("INSERT INTO properties (object_id,device_id,name,value) VALUES (?,?,?,?)"),
                 {random.objectId(), random.below(5), random.below(4) != 0 ? "name" : "colour", random.text()});
    }
    for (int i = random.below(60); i > 0; --i) {
        file.run(QStringLiteral("INSERT OR IGNORE INTO packets (id,name,args_count,flags,command,\"desc\",object_id) "
                                "VALUES (?,?,?,?,?,?,?)"),
                 {random.below(1000), random.text(), random.below(3), random.text(), random.text(), random.text(),
                  random.objectId()});
    }
    file.run(QStringLiteral("COMMIT"));
}

} // namespace

void tst_CatalogueRandom::readsAsObjectByObject_data()
{
    QTest::addColumn<QString>("columns");
    QTest::addColumn<QString>("index");

    const QString columns("id INTEGER PRIMARY KEY,name TEXT,args_count INT,flags INT,command TEXT,\"desc\" TEXT,");
    const QString unkeyed("id,name,args_count,flags,command,\"desc\",");
    QTest::newRow("as usual") << "(" + columns + "object_id INTEGER)" << QString();
    QTest::newRow("text numbers") << "(" + columns + "object_id TEXT)" << QString();
    QTest::newRow("text numbers that ignore space") << "(" + columns + "object_id TEXT COLLATE RTRIM)" << QString();
    QTest::newRow("real numbers") << "(" + columns + "object_id REAL)" << QString();
    QTest::newRow("no types") << "(" + unkeyed + "object_id)" << QString();
    QTest::newRow("indexed") << "(" + columns + "object_id INTEGER)"
                             << "(object_id)";
    QTest::newRow("indexed by object and name") << "(" + columns + "object_id INTEGER)"
                                                << "(object_id,name)";
    QTest::newRow("indexed backwards") << "(" + columns + "object_id INTEGER)"
                                       << "(object_id DESC,name DESC,id DESC)";
    QTest::newRow("text numbers indexed") << "(" + columns + "object_id TEXT)"
                                          << "(object_id,command)";
    QTest::newRow("no types, indexed") << "(" + unkeyed + "object_id)"
                                       << "(object_id,flags)";
    QTest::newRow("indexed by name") << "(" + columns + "object_id INTEGER)"
                                     << "(name)";
    QTest::newRow("index that covers all") << "(" + unkeyed + "object_id)"
                                           << "(name,flags,object_id,id,args_count,command,\"desc\")";
    QTest::newRow("kept by object") << "(" + unkeyed +
                                           "object_id INTEGER,PRIMARY KEY(object_id,flags,id)) WITHOUT ROWID"
                                    << QString();
    QTest::newRow("kept by flags") << "(" + unkeyed + "object_id INTEGER,PRIMARY KEY(flags,id)) WITHOUT ROWID"
                                   << QString();
    QTest::newRow("object as the key") << "(" + unkeyed + "object_id INT PRIMARY KEY)" << QString();
}

void tst_CatalogueRandom::readsAsObjectByObject()
{
    QFETCH(QString, columns);
    QFETCH(QString, index);

    int packets = 0;
    for (unsigned seed = 0; seed < CataloguesPerTable; ++seed) {
        TempCatalogue file;
        file.run(QStringLiteral("DROP TABLE properties"));
        file.run(QStringLiteral("CREATE TABLE properties (object_id,device_id INTEGER,name TEXT,value)"));
        file.run(QStringLiteral("DROP TABLE packets"));
        file.run("CREATE TABLE packets " + columns);
        if (!index.isEmpty())
            file.run("CREATE INDEX by_object ON packets " + index);
        Generator random(seed);
        fill(file, random);

        const Lists lists = listsOf(KvCommands(file.path()));
        const Lists expected = readObjectByObject();
        QVERIFY2(lists.first == expected.first, qPrintable(QStringLiteral("devices, seed %1").arg(seed)));
        QVERIFY2(lists.second == expected.second, qPrintable(QStringLiteral("packets, seed %1").arg(seed)));
        for (const QStringList &list : expected.second)
            packets += list.size();
    }
    // Empty lists would prove nothing.
    QVERIFY(packets > CataloguesPerTable);
}

KEL_TEST_MAIN(tst_CatalogueRandom)
#include "tst_cataloguerandom.moc"
