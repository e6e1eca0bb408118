#include "cataloguelists.h"
#include "tempcatalogue.h"
#include "testmain.h"

#include <QSqlDriver>
#include <QSqlQuery>

#include <sqlite3.h>

class tst_KvCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void startsEmpty();
    void fieldsComeFromTheirColumns();
    void objectsAreListedInQueryOrder();
    void objectWithoutNameIsNotListed();
    void nullNameIsListed();
    void objectWithoutPacketsHasAnEmptyEntry();
    void objectsOfOneNameShareAList();
    void objectListedTwiceHasItsPacketsTwice();
    void argumentCountColumnIsNeeded();
    void missingPacketsTableLeavesEmptyEntries();
    void largeCatalogueTakesFewStatements();
    void anotherDatabaseReplacesTheFirst();
    void sameDatabaseIsReadAnew();
    void connectionIsTheDefaultOne();
    void connectionOutlivesTheCatalogue();
    void closedDatabaseKeepsTheLists();
    void readAfterCloseEmptiesTheLists();
    void readTakesTheDefaultConnection();
    void variableValues_data();
    void variableValues();
    void variablesFileName_data();
    void variablesFileName();
    void variablesAreReadWithoutTables();
};

void tst_KvCommands::cleanup()
{
    const QString name = QLatin1String(QSqlDatabase::defaultConnection);
    if (QSqlDatabase::contains(name))
        QSqlDatabase::removeDatabase(name);
}

void tst_KvCommands::startsEmpty()
{
    const KvCommands catalogue;
    QVERIFY(catalogue.devices.isEmpty());
    QVERIFY(catalogue.variables.isEmpty());
    QVERIFY(catalogue.packets.isEmpty());
    QVERIFY(!catalogue.database.isOpen());
    QVERIFY(!QSqlDatabase::contains());

    const KvCommands::DeviceInfo device;
    const KvCommands::PacketInfo packet;
    QCOMPARE(device.id, 0);
    QCOMPARE(packet.id, 0);
    QCOMPARE(packet.flags, 0);
}

void tst_KvCommands::fieldsComeFromTheirColumns()
{
    TempCatalogue file;
    file.addDevice(1, QStringLiteral("Relay"), 7, QStringLiteral("Acme"), QStringLiteral("Power"),
                   QStringLiteral("Two relays"));
    file.addObject(10, 1, QStringLiteral("hall"));
    file.addPacket(100, 10, QStringLiteral("on"), QStringLiteral("01 %0"), 3, QStringLiteral("Switch on"), 1);

    const KvCommands catalogue(file.path());
    QCOMPARE(catalogue.devices.size(), 1);
    const KvCommands::DeviceInfo device = catalogue.devices.at(0);
    QCOMPARE(device.id, 10);
    QCOMPARE(device.name, QStringLiteral("hall"));
    QCOMPARE(device.devname, QStringLiteral("Relay"));
    QCOMPARE(device.vendor, QStringLiteral("Acme"));
    QCOMPARE(device.group, QStringLiteral("Power"));
    QCOMPARE(device.description, QStringLiteral("Two relays"));

    QCOMPARE(catalogue.packets.keys(), QStringList("hall"));
    QCOMPARE(catalogue.packets.value("hall").size(), 1);
    QVERIFY(catalogue.hasPacket(QStringLiteral("hall"), catalogue.packets.value("hall").at(0).name));
    QVERIFY(!catalogue.hasPacket(QStringLiteral("hall"), QStringLiteral("x")));
    QVERIFY(!catalogue.hasObject(QStringLiteral("Hall")));
    const KvCommands::PacketInfo packet = catalogue.packets.value("hall").at(0);
    QCOMPARE(packet.id, 100);
    QCOMPARE(packet.flags, 3);
    QCOMPARE(packet.name, QStringLiteral("on"));
    QCOMPARE(packet.command, QStringLiteral("01 %0"));
    QCOMPARE(packet.desc, QStringLiteral("Switch on"));
}

void tst_KvCommands::objectsAreListedInQueryOrder()
{
    TempCatalogue file;
    file.addDevice(1, QStringLiteral("A"));
    file.addObject(30, 1, QStringLiteral("z"));
    file.addObject(10, 1, QStringLiteral("m"));
    file.addObject(20, 1, QStringLiteral("a"));
    QCOMPARE(names(KvCommands(file.path())), QStringList({"z", "m", "a"}));
}

void tst_KvCommands::objectWithoutNameIsNotListed()
{
    TempCatalogue file;
    file.addDevice(1, QStringLiteral("A"));
    file.run(
        QStringLiteral("INSERT INTO properties VALUES (10,1,'colour','red'),(11,1,'Name','hall'),(12,2,'name','x')"));
    const KvCommands catalogue(file.path());
    QVERIFY(catalogue.devices.isEmpty());
    QVERIFY(catalogue.packets.isEmpty());
}

void tst_KvCommands::nullNameIsListed()
{
    TempCatalogue file;
    file.addDevice(1, QStringLiteral("A"));
    file.addObject(10, 1, QVariant());
    file.addPacket(100, 10, QStringLiteral("on"), QStringLiteral("01"));
    const KvCommands catalogue(file.path());
    QCOMPARE(names(catalogue), QStringList(QString()));
    QCOMPARE(packetNames(catalogue, QString()), QStringList("on"));
}

void tst_KvCommands::objectWithoutPacketsHasAnEmptyEntry()
{
    TempCatalogue file;
    file.addDevice(1, QStringLiteral("A"));
    file.addObject(10, 1, QStringLiteral("hall"));
    file.addPacket(100, 11, QStringLiteral("nobody's"), QStringLiteral("01"));
    const KvCommands catalogue(file.path());
    QCOMPARE(catalogue.packets.keys(), QStringList("hall"));
    QVERIFY(catalogue.packets.value("hall").isEmpty());
    QVERIFY(catalogue.hasObject(QStringLiteral("hall")));
    QVERIFY(!catalogue.hasPacket(QStringLiteral("hall"), QString()));
}

void tst_KvCommands::objectsOfOneNameShareAList()
{
    TempCatalogue file;
    file.addDevice(1, QStringLiteral("A"));
    file.addObject(20, 1, QStringLiteral("hall"));
    file.addObject(10, 1, QStringLiteral("hall"));
    file.addPacket(1, 10, QStringLiteral("a"), QString());
    file.addPacket(2, 20, QStringLiteral("b"), QString());
    file.addPacket(3, 10, QStringLiteral("c"), QString());
    file.addPacket(4, 20, QStringLiteral("d"), QString());
    const KvCommands catalogue(file.path());
    QCOMPARE(names(catalogue), QStringList({"hall", "hall"}));
    QCOMPARE(packetNames(catalogue, QStringLiteral("hall")), QStringList({"b", "d", "a", "c"}));
}

void tst_KvCommands::objectListedTwiceHasItsPacketsTwice()
{
    TempCatalogue file;
    file.addDevice(1, QStringLiteral("A"));
    file.addObject(10, 1, QStringLiteral("hall"));
    file.addObject(10, 1, QStringLiteral("hall"));
    file.addObject(10, 1, QStringLiteral("door"));
    file.addPacket(1, 10, QStringLiteral("a"), QString());
    file.addPacket(2, 10, QStringLiteral("b"), QString());
    const KvCommands catalogue(file.path());
    QCOMPARE(packetNames(catalogue, QStringLiteral("hall")), QStringList({"a", "b", "a", "b"}));
    QCOMPARE(packetNames(catalogue, QStringLiteral("door")), QStringList({"a", "b"}));
}

void tst_KvCommands::argumentCountColumnIsNeeded()
{
    TempCatalogue file;
    file.fillSmall();
    file.run(QStringLiteral("ALTER TABLE packets DROP COLUMN args_count"));
    const KvCommands catalogue(file.path());
    QCOMPARE(names(catalogue), QStringList("hall"));
    QVERIFY(catalogue.packets.value("hall").isEmpty());
}

void tst_KvCommands::missingPacketsTableLeavesEmptyEntries()
{
    TempCatalogue file;
    file.fillSmall();
    file.run(QStringLiteral("DROP TABLE packets"));
    const KvCommands catalogue(file.path());
    QCOMPARE(names(catalogue), QStringList("hall"));
    QCOMPARE(catalogue.packets.keys(), QStringList("hall"));
    QVERIFY(catalogue.packets.value("hall").isEmpty());
    QCOMPARE(variables(catalogue), QStringList("t=10 m"));
}

void tst_KvCommands::largeCatalogueTakesFewStatements()
{
    TempCatalogue file;
    file.addDevice(1, QStringLiteral("A"));
    file.run(QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<1000) "
                            "INSERT INTO properties SELECT i,1,'name','object '||i FROM n"));
    file.run(QStringLiteral("INSERT INTO packets (object_id,name) SELECT object_id,'on' FROM properties"));

    KvCommands catalogue(file.path());
    int statements = 0;
    const auto count = [](unsigned, void *counter, void *, void *) { return ++*static_cast<int *>(counter), 0; };
    auto *connection = *static_cast<sqlite3 *const *>(catalogue.database.driver()->handle().data());
    sqlite3_trace_v2(connection, SQLITE_TRACE_STMT, count, &statements);
    catalogue.read();
    sqlite3_trace_v2(connection, 0, nullptr, nullptr);

    QCOMPARE(catalogue.packets.size(), 1000);
    QCOMPARE(packetNames(catalogue, QStringLiteral("object 1000")), QStringList("on"));
    QVERIFY2(statements > 0 && statements <= 5, qPrintable(QString::number(statements)));
}

void tst_KvCommands::anotherDatabaseReplacesTheFirst()
{
    TempCatalogue first;
    first.fillSmall();
    TempCatalogue second;
    second.addDevice(1, QStringLiteral("Lamp"));
    second.addObject(10, 1, QStringLiteral("kitchen"));

    KvCommands catalogue(first.path());
    catalogue.setDatabase(second.path());
    QVERIFY(catalogue.database.isOpen());
    QCOMPARE(catalogue.database.databaseName(), second.path());
    QCOMPARE(names(catalogue), QStringList("kitchen"));
    QCOMPARE(catalogue.packets.keys(), QStringList("kitchen"));
    QVERIFY(catalogue.variables.isEmpty());
}

void tst_KvCommands::sameDatabaseIsReadAnew()
{
    TempCatalogue file;
    file.fillSmall();
    KvCommands catalogue(file.path());
    file.addObject(11, 1, QStringLiteral("door"));

    catalogue.setDatabase(file.path());
    QCOMPARE(names(catalogue), QStringList({"hall", "door"}));
    file.addObject(12, 1, QStringLiteral("stairs"));
    catalogue.read();
    QCOMPARE(names(catalogue), QStringList({"hall", "door", "stairs"}));
    QCOMPARE(packetNames(catalogue, QStringLiteral("hall")), QStringList("on"));
    QCOMPARE(variables(catalogue), QStringList("t=10 m"));
}

void tst_KvCommands::connectionIsTheDefaultOne()
{
    TempCatalogue file;
    file.fillSmall();
    const KvCommands catalogue(file.path());
    QCOMPARE(catalogue.database.connectionName(), QString(QLatin1String(QSqlDatabase::defaultConnection)));
    QCOMPARE(catalogue.database.driverName(), QStringLiteral("QSQLITE"));

    QSqlQuery query(QStringLiteral("SELECT name FROM devices"));
    QVERIFY(query.next());
    QCOMPARE(query.value(0).toString(), QStringLiteral("Relay"));
}

void tst_KvCommands::connectionOutlivesTheCatalogue()
{
    TempCatalogue file;
    file.fillSmall();
    KvCommands(file.path()).read();
    QVERIFY(QSqlDatabase::database().isOpen());
}

void tst_KvCommands::closedDatabaseKeepsTheLists()
{
    TempCatalogue file;
    file.fillSmall();
    KvCommands catalogue(file.path());
    catalogue.closeDatabase();
    QVERIFY(!catalogue.database.isOpen());
    QVERIFY(!QSqlDatabase::database(QLatin1String(QSqlDatabase::defaultConnection), false).isOpen());
    QCOMPARE(names(catalogue), QStringList("hall"));
    QCOMPARE(packetNames(catalogue, QStringLiteral("hall")), QStringList("on"));
    QCOMPARE(variables(catalogue), QStringList("t=10 m"));

    KvCommands closedBeforeOpened;
    closedBeforeOpened.closeDatabase();
}

void tst_KvCommands::readAfterCloseEmptiesTheLists()
{
    TempCatalogue file;
    file.fillSmall();
    KvCommands catalogue(file.path());
    catalogue.closeDatabase();
    catalogue.read();
    QVERIFY(!catalogue.database.isOpen());
    QVERIFY(catalogue.devices.isEmpty());
    QVERIFY(catalogue.packets.isEmpty());
    QVERIFY(catalogue.variables.isEmpty());
}

void tst_KvCommands::readTakesTheDefaultConnection()
{
    TempCatalogue file;
    file.fillSmall();
    const KvCommands first(file.path());

    KvCommands second;
    second.read();
    QCOMPARE(names(second), QStringList("hall"));
    QCOMPARE(packetNames(second, QStringLiteral("hall")), QStringList("on"));
    QVERIFY(second.variables.isEmpty());
}

void tst_KvCommands::variableValues_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("result");

    QTest::newRow("duration") << QByteArray("t = float{10 m}") << QStringList("t=10 m");
    QTest::newRow("no braces") << QByteArray("t = float") << QStringList("t=inf");
    QTest::newRow("empty braces") << QByteArray("t = float{}") << QStringList("t=inf");
    QTest::newRow("no value") << QByteArray("t =") << QStringList("t=inf");
    QTest::newRow("several, in order") << QByteArray("b = x{1 s}\na = x{2 s}\nb = x{3 s}")
                                       << QStringList({"b=1 s", "a=2 s", "b=3 s"});
    QTest::newRow("short name of a dotted one") << QByteArray("hall.t = x{1 s}") << QStringList("t=1 s");
    QTest::newRow("short name in a section") << QByteArray("[hall]\nt = x{1 s}") << QStringList("t=1 s");
    QTest::newRow("empty file") << QByteArray() << QStringList();
}

void tst_KvCommands::variableValues()
{
    QFETCH(QByteArray, text);
    TempCatalogue file;
    file.writeVariables(text);
    QTEST(variables(KvCommands(file.path())), "result");
}

void tst_KvCommands::variablesFileName_data()
{
    QTest::addColumn<QString>("database");
    QTest::addColumn<QString>("variables");

    QTest::newRow("one extension") << "cat.sqlite"
                                   << "cat.var";
    QTest::newRow("two extensions") << "cat.my.sqlite"
                                    << "cat.var";
    QTest::newRow("no extension") << "cat"
                                  << "cat.var";
    QTest::newRow("hidden") << ".cat"
                            << ".var";
}

void tst_KvCommands::variablesFileName()
{
    QFETCH(QString, database);
    QFETCH(QString, variables);

    TempCatalogue file;
    file.writeFile(database, QByteArray());
    // The path is told before the file is looked for.
    const QString path = file.filePath(variables);
    QTest::ignoreMessage(QtDebugMsg, qPrintable('"' + path + '"'));
    KvCommands catalogue(file.filePath(database));
    QVERIFY(catalogue.variables.isEmpty());

    file.writeFile(variables, "t = x{1 s}");
    QTest::ignoreMessage(QtDebugMsg, qPrintable('"' + path + '"'));
    catalogue.read();
    QCOMPARE(::variables(catalogue), QStringList("t=1 s"));
}

void tst_KvCommands::variablesAreReadWithoutTables()
{
    TempCatalogue file;
    file.fillSmall();
    file.run(QStringLiteral("DROP TABLE devices"));
    const KvCommands catalogue(file.path());
    QVERIFY(catalogue.devices.isEmpty());
    QVERIFY(catalogue.packets.isEmpty());
    QCOMPARE(variables(catalogue), QStringList("t=10 m"));
}

KEL_TEST_MAIN(tst_KvCommands)
#include "tst_kvcommands.moc"
