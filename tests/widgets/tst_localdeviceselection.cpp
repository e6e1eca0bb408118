#include "devicebench.h"
#include "tempcatalogue.h"
#include "testmain.h"

#include <QLabel>
#include <QScrollArea>
#include <QSqlQuery>
#include <QVBoxLayout>

#include <memory>

/// Leaves out the transport's mark and has something to say about the transport.
class NamedDevice : public BenchDevice
{
    Q_OBJECT

public:
    QString prepareDevName(const QString &name) override
    {
        ++named;
        return name + QStringLiteral(" [%1 wire]");
    }
    QString additionalDevInfo() override { return QStringLiteral("over %7 the wire"); }

    int named = 0;
};

/// Counts the refreshes that are no timer's.
class RefreshedDevice : public BenchDevice
{
    Q_OBJECT

public:
    int refreshed = 0;
    QStringList names; ///< What "__devname" was set to.

protected:
    void timerEvent(QTimerEvent *event) override
    {
        refreshed += event ? 0 : 1;
        BenchDevice::timerEvent(event);
    }
    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::DynamicPropertyChange)
            names << property("__devname").toString();
        return BenchDevice::event(event);
    }
};

class tst_LocalDeviceSelection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void selectionLoadsTheDevice();
    void toolTipTellsAll();
    void debugMessages();
    void textsWithPercentSignsStay();
    void rowsBelongToTheDeviceNumber();
    void laterRowOfTheSameNumberWins();
    void deviceIdInAnswers_data();
    void deviceIdInAnswers();
    void emptyTables();
    void sameRowAgainDoesNothing();
    void otherRowReplaces();
    void missingRows_data();
    void missingRows();
    void failingQueries_data();
    void failingQueries();
    void noDatabase();
    void virtualName();
    void nameIsEmptiedFirst();
    void argumentsSurviveSelection();

private:
    void fill();

    std::unique_ptr<TempCatalogue> m_catalogue;
};

void tst_LocalDeviceSelection::init()
{
    m_catalogue = std::make_unique<TempCatalogue>();
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"));
    db.setDatabaseName(m_catalogue->path());
    QVERIFY(db.open());
    fill();
}

void tst_LocalDeviceSelection::cleanup()
{
    QSqlDatabase::database().close();
    QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
    m_catalogue.reset();
}

void tst_LocalDeviceSelection::fill()
{
    m_catalogue->addVendor(3, QStringLiteral("Acme"));
    m_catalogue->addDevice(20, QStringLiteral("Relay"), 3);
    m_catalogue->addDevice(21, QStringLiteral("Dimmer"), 3);
    m_catalogue->addDevice(22, QStringLiteral("Orphan"), 99);
    m_catalogue->addCurrent(1, 20, QStringLiteral("Hall"), 5);
    m_catalogue->addCurrent(2, 21, QStringLiteral("Stairs"), 6);
    m_catalogue->addCurrent(3, 77, QStringLiteral("Nowhere"), 8);
    m_catalogue->addCurrent(4, 22, QStringLiteral("Orphan"), 9);
    m_catalogue->addCommand(11, 20, QStringLiteral("AA %id 01"), QStringLiteral("on"));
    m_catalogue->addCommand(10, 20, QStringLiteral("AA %id 00"), QStringLiteral("off"));
    m_catalogue->addCommand(12, 21, QStringLiteral("DD %0"), QStringLiteral("level"));
    m_catalogue->addAnswer(31, 20, QStringLiteral("AA %id  %0"), QStringLiteral("state"));
    m_catalogue->addAnswer(30, 20, QStringLiteral("1AA (x) %3"), QStringLiteral("odd"));
    m_catalogue->addAnswer(32, 21, QStringLiteral("DD"), QStringLiteral("done"));
}

void tst_LocalDeviceSelection::selectionLoadsTheDevice()
{
    BenchDevice device;
    QVERIFY(device.setProperty("currentID", 1));
    QCOMPARE(device.currentID(), 1);
    QCOMPARE(device.deviceID, 5);
    QCOMPARE(device.property("__devname").toString(), QStringLiteral("Hall (Relay Acme) [local]"));
    QCOMPARE(device.commands,
             (QMap<int, QString>{{10, QStringLiteral("AA %id 00")}, {11, QStringLiteral("AA %id 01")}}));
    QCOMPARE(device.commandDescriptions, (QMap<int, QString>{{10, QStringLiteral("off")}, {11, QStringLiteral("on")}}));
    QCOMPARE(device.answers, (QMap<int, QVector<int>>{{31, {0xAA, 5, ~0}}, {30, {0x1AA, 0, ~3}}}));
}

void tst_LocalDeviceSelection::toolTipTellsAll()
{
    BenchDevice device;
    device.setCurrentID(1);
    QCOMPARE(device.toolTip(), QStringLiteral("Hall (Relay Acme) [local]\n"
                                              "id(current) = 1, id(device) = 5\n"
                                              "Commands:\n"
                                              "11: AA %id 01 (on)\n"
                                              "10: AA %id 00 (off)\n"
                                              "Answers:\n"
                                              "31: AA %id  %0 (state)\n"
                                              "30: 1AA (x) %3 (odd)"));
}

void tst_LocalDeviceSelection::debugMessages()
{
    BenchDevice device;
    QTest::ignoreMessage(QtDebugMsg, "commands QMap((12, \"DD %0\"))");
    QTest::ignoreMessage(QtDebugMsg, "answers QMap((32, QVector(221)))");
    device.setCurrentID(2);
}

void tst_LocalDeviceSelection::textsWithPercentSignsStay()
{
    m_catalogue->run(QStringLiteral("DELETE FROM commands"));
    m_catalogue->run(QStringLiteral("DELETE FROM answers"));
    m_catalogue->run(QStringLiteral("UPDATE current SET name='%2 %3' WHERE id=1"));
    m_catalogue->run(QStringLiteral("UPDATE devices SET name='%1%3' WHERE id=20"));
    m_catalogue->run(QStringLiteral("UPDATE vendors SET name='%99 %L1'"));
    m_catalogue->addCommand(1, 20, QStringLiteral("%0 %1 %2 %3"), QStringLiteral("%1 %2"));
    m_catalogue->addAnswer(2, 20, QStringLiteral("%3 %2 %1"), QStringLiteral("%8"));
    BenchDevice device;
    device.buildDebug();
    device.setDeviceReadPath(QStringLiteral("%3 %8"));
    device.setDeviceSendPath(QStringLiteral("%4 %7"));
    device.setCurrentID(1);
    QCOMPARE(device.toolTip(), QStringLiteral("%2 %3 (%1%3 %99 %L1) [local]\n"
                                              "id(current) = 1, id(device) = 5\n"
                                              "Device Read: %3 %8\n"
                                              "Device Send: %4 %7\n"
                                              "\n"
                                              "Sended / Received: 0 / 0\n"
                                              "\n"
                                              "Commands:\n1: %0 %1 %2 %3 (%1 %2)\n"
                                              "\n"
                                              "Answers:\n2: %3 %2 %1 (%8)"));
}

void tst_LocalDeviceSelection::rowsBelongToTheDeviceNumber()
{
    // The row in "current" and the device's own id are other numbers on purpose.
    m_catalogue->addCommand(90, 2, QStringLiteral("02"), QStringLiteral("of the row"));
    m_catalogue->addCommand(91, 6, QStringLiteral("06"), QStringLiteral("of the own id"));
    m_catalogue->addAnswer(92, 2, QStringLiteral("02"));
    m_catalogue->addAnswer(93, 6, QStringLiteral("06"));
    BenchDevice device;
    device.setCurrentID(2);
    QCOMPARE(device.commands.keys(), QList<int>{12});
    QCOMPARE(device.answers.keys(), QList<int>{32});
}

void tst_LocalDeviceSelection::laterRowOfTheSameNumberWins()
{
    m_catalogue->addCommand(12, 21, QStringLiteral("EE"), QStringLiteral("again"));
    m_catalogue->addAnswer(32, 21, QStringLiteral("EF"), QStringLiteral("again"));
    BenchDevice device;
    device.setCurrentID(2);
    QCOMPARE(device.commands, (QMap<int, QString>{{12, QStringLiteral("EE")}}));
    QCOMPARE(device.commandDescriptions, (QMap<int, QString>{{12, QStringLiteral("again")}}));
    QCOMPARE(device.answers, (QMap<int, QVector<int>>{{32, {0xEF}}}));
    QVERIFY(device.toolTip().contains(QStringLiteral("\n12: DD %0 (level)\n12: EE (again)\n")));
    QVERIFY(device.toolTip().endsWith(QStringLiteral("\n32: DD (done)\n32: EF (again)")));
}

void tst_LocalDeviceSelection::deviceIdInAnswers_data()
{
    QTest::addColumn<int>("deviceID");

    QTest::newRow("plain") << 5;
    QTest::newRow("above a byte") << 1000;
    QTest::newRow("none captures argument 0") << -1;
}

void tst_LocalDeviceSelection::deviceIdInAnswers()
{
    QFETCH(int, deviceID);

    m_catalogue->addCurrent(50, 20, QStringLiteral("Cellar"), deviceID);
    BenchDevice device;
    device.setCurrentID(50);
    QCOMPARE(device.answers.value(31), (QVector<int>{0xAA, deviceID, ~0}));
}

void tst_LocalDeviceSelection::emptyTables()
{
    m_catalogue->run(QStringLiteral("DELETE FROM commands"));
    m_catalogue->run(QStringLiteral("DELETE FROM answers"));
    BenchDevice device;
    device.setCurrentID(1);
    QCOMPARE(device.toolTip(), QStringLiteral("Hall (Relay Acme) [local]\nid(current) = 1, id(device) = 5\n"
                                              "Commands:\nAnswers:"));
}

void tst_LocalDeviceSelection::sameRowAgainDoesNothing()
{
    RefreshedDevice device;
    device.setCurrentID(-1);
    QCOMPARE(device.refreshed, 0);
    QCOMPARE(device.toolTip(), QStringLiteral("Unknown device"));

    device.setCurrentID(1);
    QCOMPARE(device.refreshed, 1);
    m_catalogue->run(QStringLiteral("UPDATE current SET device=21"));
    device.setToolTip(QStringLiteral("untouched"));
    device.setCurrentID(1);
    QCOMPARE(device.refreshed, 1);
    QCOMPARE(device.toolTip(), QStringLiteral("untouched"));
    QCOMPARE(device.commands.size(), 2);
}

void tst_LocalDeviceSelection::otherRowReplaces()
{
    BenchDevice device;
    device.setCurrentID(1);
    device.setCurrentID(2);
    QCOMPARE(device.deviceID, 6);
    QCOMPARE(device.commands.keys(), QList<int>{12});
    QCOMPARE(device.commandDescriptions.keys(), QList<int>{12});
    QCOMPARE(device.answers, (QMap<int, QVector<int>>{{32, {0xDD}}}));
    QCOMPARE(device.property("__devname").toString(), QStringLiteral("Stairs (Dimmer Acme) [local]"));
    QVERIFY(!device.toolTip().contains(QStringLiteral("Hall")));
}

void tst_LocalDeviceSelection::missingRows_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("deviceID");
    QTest::addColumn<bool>("cleared");

    QTest::newRow("no such row keeps what was loaded") << 1000 << 5 << false;
    QTest::newRow("no such device clears it") << 3 << 8 << true;
    QTest::newRow("no such vendor clears it") << 4 << 9 << true;
    QTest::newRow("back to -1 keeps it") << -1 << 5 << false;
}

void tst_LocalDeviceSelection::missingRows()
{
    QFETCH(int, id);
    QFETCH(int, deviceID);
    QFETCH(bool, cleared);

    RefreshedDevice device;
    device.setCurrentID(1);
    device.setCurrentID(id);
    QCOMPARE(device.currentID(), id);
    QCOMPARE(device.deviceID, deviceID);
    QCOMPARE(device.toolTip(), QString());
    QCOMPARE(device.refreshed, 2);
    QCOMPARE(device.commands.isEmpty(), cleared);
    QCOMPARE(device.commandDescriptions.isEmpty(), cleared);
    QCOMPARE(device.answers.isEmpty(), cleared);
    QCOMPARE(device.property("__devname").toString().isEmpty(), cleared);
    QVERIFY(device.property("__devname").isValid());

    device.buildDebug();
    QTRY_COMPARE(device.toolTip(), QStringLiteral("Unknown device"));
}

void tst_LocalDeviceSelection::failingQueries_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<int>("deviceID");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QList<int>>("commands");
    QTest::addColumn<QList<int>>("answers");

    const QString hall = QStringLiteral("Hall (Relay Acme) [local]");
    const QString stairs = QStringLiteral("Stairs (Dimmer Acme) [local]");
    QTest::newRow("no row is read") << QStringLiteral("current") << 5 << hall << QList<int>{10, 11}
                                    << QList<int>{30, 31};
    QTest::newRow("no device is read") << QStringLiteral("devices") << 6 << hall << QList<int>{10, 11}
                                       << QList<int>{30, 31};
    QTest::newRow("no vendor is read") << QStringLiteral("vendors") << 6 << hall << QList<int>{10, 11}
                                       << QList<int>{30, 31};
    QTest::newRow("no command is read") << QStringLiteral("commands") << 6 << stairs << QList<int>{} << QList<int>{};
    QTest::newRow("no answer is read") << QStringLiteral("answers") << 6 << stairs << QList<int>{12} << QList<int>{};
}

void tst_LocalDeviceSelection::failingQueries()
{
    QFETCH(QString, table);
    QFETCH(int, deviceID);
    QFETCH(QString, name);
    QFETCH(QList<int>, commands);
    QFETCH(QList<int>, answers);

    RefreshedDevice device;
    device.setCurrentID(1);
    m_catalogue->run(QStringLiteral("DROP TABLE ") + table);
    device.setCurrentID(2);
    QCOMPARE(device.currentID(), 2);
    QCOMPARE(device.refreshed, 1);
    QCOMPARE(device.toolTip(), QString());
    QCOMPARE(device.deviceID, deviceID);
    QCOMPARE(device.property("__devname").toString(), name);
    QCOMPARE(device.commands.keys(), commands);
    QCOMPARE(device.commandDescriptions.keys(), commands);
    QCOMPARE(device.answers.keys(), answers);
}

void tst_LocalDeviceSelection::noDatabase()
{
    RefreshedDevice device;
    QSqlDatabase::database().close();
    device.setCurrentID(1);
    QVERIFY(!QSqlDatabase::database(QLatin1String(QSqlDatabase::defaultConnection), false).isOpen());
    QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
    device.setCurrentID(2);
    QCOMPARE(device.currentID(), 2);
    QCOMPARE(device.deviceID, -1);
    QCOMPARE(device.refreshed, 0);
    QCOMPARE(device.toolTip(), QString());
    QVERIFY(!device.property("__devname").isValid());
    QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"));
}

void tst_LocalDeviceSelection::virtualName()
{
    NamedDevice device;
    device.setCurrentID(1);
    QCOMPARE(device.named, 1);
    QCOMPARE(device.property("__devname").toString(), QStringLiteral("Hall (Relay Acme) [%1 wire]"));
    QVERIFY(device.toolTip().startsWith(
        QStringLiteral("Hall (Relay Acme) [%1 wire]\nid(current) = 1, id(device) = 5\nCommands:\n")));
    QCOMPARE(LocalDevice().prepareDevName(QStringLiteral("x")), QStringLiteral("x [local]"));
    QCOMPARE(LocalDevice().additionalDevInfo(), QString());
}

void tst_LocalDeviceSelection::nameIsEmptiedFirst()
{
    RefreshedDevice device;
    device.setCurrentID(1);
    device.setCurrentID(2);
    QCOMPARE(device.names, (QStringList{QString(), QStringLiteral("Hall (Relay Acme) [local]"), QString(),
                                        QStringLiteral("Stairs (Dimmer Acme) [local]")}));
}

void tst_LocalDeviceSelection::argumentsSurviveSelection()
{
    BenchDevice device;
    device.setArgument0(7);
    device.receivedCount = 3;
    device.setCurrentID(2);
    QCOMPARE(hex(device.parseSendData(device.commands.value(12))), QStringLiteral("DD 07"));
    QCOMPARE(hex(device.parseSendData(QStringLiteral("%(a0)"))), QStringLiteral("07"));
    QCOMPARE(device.receivedCount, 3);
}

KEL_TEST_MAIN(tst_LocalDeviceSelection)
#include "tst_localdeviceselection.moc"
