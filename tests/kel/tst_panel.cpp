#include "kelprocess.h"
#include "ptypair.h"
#include "tempcatalogue.h"
#include "testmain.h"

#include <catalogue/catalogue.h>
#include <command.h>
#include <kelbutton.h>
#include <kelglobals.h>
#include <localdevice.h>
#include <panel/deviceroutes.h>
#include <panel/formloader.h>
#include <panel/latereading.h>

#include <QFile>
#include <QLabel>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace
{

QByteArray hex(const char *text)
{
    return QByteArray::fromHex(text);
}

/// A form with a button that sends command 1 and lights up at answer 2, whose value a label shows.
QByteArray formText(const QString &path, const QByteArray &extraProperties = {},
                    const QByteArray &extraConnections = {})
{
    return "<ui version='4.0'><class>P</class><widget class='QWidget' name='P'><layout class='QVBoxLayout'>"
           "<item><widget class='KelButton' name='button'><property name='clickID'><number>1</number></property>"
           "<property name='yesID'><number>2</number></property></widget></item>"
           "<item><widget class='QLabel' name='label'/></item>"
           "<item><widget class='LocalDevice' name='device'><property name='currentID'><number>5</number></property>"
           "<property name='deviceSendPath'><string>" +
           path.toUtf8() + "</string></property><property name='deviceReadPath'><string>" + path.toUtf8() +
           "</string></property>" + extraProperties +
           "</widget></item></layout></widget><connections>"
           "<connection><sender>button</sender><signal>clickedID(int)</signal><receiver>device</receiver>"
           "<slot>sendCommand(int)</slot></connection>"
           "<connection><sender>device</sender><signal>receivedAnswerID(int)</signal><receiver>button</receiver>"
           "<slot>setStateYesID(int)</slot></connection>"
           "<connection><sender>device</sender><signal>receivedAnswerArg0(int)</signal><receiver>label</receiver>"
           "<slot>setNum(int)</slot></connection>" +
           extraConnections + "</connections></ui>";
}

/// The line of the CommandError that \a action throws; empty when it throws none.
template <typename Action>
QString errorOf(Action action)
{
    try {
        action();
    } catch (const CommandError &error) {
        return QString::fromLocal8Bit(error.what());
    }
    return QString();
}

} // namespace

class tst_Panel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void catalogueIsReadAfterTheFirstFrame();
    void initTestCase();
    void cleanup();
    void transportPathOfADevice_data();
    void transportPathOfADevice();
    void pressGoesOutAndAnswerComesIn();
    void pieceOfAMessageWaitsForTheRest();
    void devicesOfOnePathShareAPort();
    void differentPinsOnOnePathAreTold();
    void deviceWithoutPathGetsNoTransport();
    void pathThatCannotBeOpenedIsTold_data();
    void pathThatCannotBeOpenedIsTold();
    void connectionsThatDoNotFitAreNamed();
    void screenshotIsSaved();
    void wrongFormIsOneLine_data();
    void wrongFormIsOneLine();
    void wrongCatalogueIsOneLine_data();
    void wrongCatalogueIsOneLine();
    void lockedCatalogueIsTold();
    void wrongPathIsOneLine_data();
    void wrongPathIsOneLine();
    void secondProgramOnOnePortIsTold();
    void pictureThatCannotBeWrittenIsTold();

private:
    QString writeForm(const QByteArray &text);

    TempCatalogue m_catalogue;
};

void tst_Panel::initTestCase()
{
    m_catalogue.addVendor(1, QStringLiteral("Acme"));
    m_catalogue.addDevice(3, QStringLiteral("Relay"), 1);
    m_catalogue.addCurrent(5, 3, QStringLiteral("Hall"), 7);
    m_catalogue.addCommand(1, 3, QStringLiteral("A1 %id 01"));
    m_catalogue.addAnswer(2, 3, QStringLiteral("A2 %id %0"));
    m_catalogue.addObject(10, 3, QStringLiteral("hall"));
    m_catalogue.addPacket(100, 10, QStringLiteral("on"), QStringLiteral("01 FF"));
    openCatalogue(m_catalogue.path());
    QVERIFY(Kel::commandsDB.database.isOpen());
}

void tst_Panel::cleanup()
{
    QVERIFY(Kel::connection.paths().isEmpty());
    Kel::connection.setMessageGap(20);
    Kel::connection.clearErrors();
}

QString tst_Panel::writeForm(const QByteArray &text)
{
    m_catalogue.writeFile(QStringLiteral("x.ui"), text);
    return m_catalogue.filePath(QStringLiteral("x.ui"));
}

void tst_Panel::transportPathOfADevice_data()
{
    QTest::addColumn<bool>("twitchGPIO");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("transport");

    const QString plain = QStringLiteral("ser:///dev/ttyS0:9600:8:N:1");
    QTest::newRow("plain serial path with a pin")
        << true << plain << QStringLiteral("gser://4:1:0:/dev/ttyS0:9600:8:N:1");
    QTest::newRow("plain serial path without a pin") << false << plain << plain;
    const QString queued = QStringLiteral("gser://18:0:1:/dev/ttyS0:9600:8:N:1");
    QTest::newRow("queued path keeps its own pin") << true << queued << queued;
    const QString tcp = QStringLiteral("tcp://localhost:4000");
    QTest::newRow("network path has no pin") << true << tcp << tcp;
}

void tst_Panel::transportPathOfADevice()
{
    QFETCH(bool, twitchGPIO);
    QFETCH(QString, path);
    QFETCH(QString, transport);
    LocalDevice device;
    device.setTwitchGPIO(twitchGPIO);
    device.setTwitchPinNumber(4);
    device.setTwitchPinReadState(true);
    device.setTwitchPinSendState(false);

    QCOMPARE(transportPath(device, path), transport);
}

void tst_Panel::pressGoesOutAndAnswerComesIn()
{
    PtyPair line;
    const QString path = QStringLiteral("gser://0:0:0:%1:115200:8:N:1").arg(line.path());
    const LoadedForm form = loadForm(writeForm(formText(path)));
    QCOMPARE(form.complaints, QStringList());
    DeviceRoutes routes(Kel::connection, QStringLiteral("x.ui"));
    routes.open(*form.window);
    auto *button = form.window->findChild<KelButton *>();
    QSignalSpy answered(form.window->findChild<LocalDevice *>(), &LocalDevice::receivedAnswerID);

    button->click();
    QCOMPARE(line.read(3), hex("a10701"));
    QVERIFY(line.write(hex("a2072a")));
    QTRY_COMPARE(answered.size(), 1);
    QCOMPARE(button->state(), KelButton::Yes);
    QCOMPARE(form.window->findChild<QLabel *>()->text(), QStringLiteral("42"));
}

void tst_Panel::pieceOfAMessageWaitsForTheRest()
{
    PtyPair line;
    Kel::connection.setMessageGap(400);
    const LoadedForm form = loadForm(writeForm(formText(QStringLiteral("gser://0:0:0:%1:115200").arg(line.path()))));
    DeviceRoutes routes(Kel::connection, QStringLiteral("x.ui"));
    QSignalSpy received(&routes, &DeviceRoutes::received);
    routes.open(*form.window);

    QVERIFY(line.write(hex("a2")));
    QVERIFY(line.write(hex("072b")));
    QTRY_COMPARE(received.size(), 1);
    QCOMPARE(received.at(0).at(1).toByteArray(), hex("a2072b"));
}

void tst_Panel::devicesOfOnePathShareAPort()
{
    PtyPair line;
    const QString path = QStringLiteral("gser://0:0:0:%1:115200:8:N:1").arg(line.path());
    QWidget window;
    LocalDevice first(&window);
    LocalDevice second(&window);
    for (LocalDevice *device : {&first, &second}) {
        device->setCurrentID(5);
        device->setDeviceReadPath(path);
        device->setDeviceSendPath(path);
    }
    QSignalSpy firstAnswers(&first, &LocalDevice::receivedAnswerID);
    QSignalSpy secondAnswers(&second, &LocalDevice::receivedAnswerID);
    DeviceRoutes routes(Kel::connection, QStringLiteral("x.ui"));
    routes.open(window);
    QCOMPARE(Kel::connection.paths().size(), 1);

    first.sendCommand(1);
    second.sendCommand(1);
    QCOMPARE(line.read(6), hex("a10701a10701"));
    QVERIFY(line.write(hex("a20701")));
    QTRY_COMPARE(firstAnswers.size(), 1);
    QTRY_COMPARE(secondAnswers.size(), 1);
}

void tst_Panel::differentPinsOnOnePathAreTold()
{
    PtyPair line;
    QWidget window;
    LocalDevice first(&window);
    LocalDevice second(&window);
    second.setObjectName(QStringLiteral("second"));
    for (LocalDevice *device : {&first, &second}) {
        device->setTwitchPinNumber(0);
        device->setDeviceSendPath(QStringLiteral("ser://%1:9600").arg(line.path()));
    }
    second.setTwitchPinReadState(true);
    DeviceRoutes routes(Kel::connection, QStringLiteral("x.ui"));

    QCOMPARE(errorOf([&] { routes.open(window); }),
             QStringLiteral("x.ui: second: ser://%1:9600 has another direction pin or other levels at a device before")
                 .arg(line.path()));
}

void tst_Panel::deviceWithoutPathGetsNoTransport()
{
    QWidget window;
    LocalDevice device(&window);
    DeviceRoutes routes(Kel::connection, QStringLiteral("x.ui"));
    QSignalSpy sent(&routes, &DeviceRoutes::sent);
    routes.open(window);
    device.sendCommand(QStringLiteral("01"));

    QVERIFY(Kel::connection.paths().isEmpty());
    QCOMPARE(sent.size(), 0);
}

void tst_Panel::pathThatCannotBeOpenedIsTold_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("error");

    const auto row = [](const char *name, const char *path, const char *error) {
        QTest::newRow(name) << QString::fromLatin1(path) << QString::fromLatin1(error);
    };
    row("unknown prefix", "smoke://signal", "smoke");
    row("no prefix", "/dev/ttyS0", "/dev/ttyS0");
    row("no such port", "gser://0:0:0:/dev/no-such-port:9600:8:N:1", "/dev/no-such-port");
    row("no such serial port", "ser:///dev/no-such-port:9600:8:N:1", "/dev/no-such-port");
}

void tst_Panel::pathThatCannotBeOpenedIsTold()
{
    QFETCH(QString, path);
    QFETCH(QString, error);
    QWidget window;
    LocalDevice device(&window);
    device.setObjectName(QStringLiteral("relay"));
    device.setTwitchGPIO(false);
    device.setDeviceReadPath(path);
    DeviceRoutes routes(Kel::connection, QStringLiteral("x.ui"));

    const QString said = errorOf([&] { routes.open(window); });
    QVERIFY2(said.startsWith(QLatin1String("x.ui: relay: ")), qPrintable(said));
    QVERIFY2(said.contains(error), qPrintable(said));
    QVERIFY(!said.contains(QLatin1Char('\n')));
}

void tst_Panel::connectionsThatDoNotFitAreNamed()
{
    const auto wire = [](const char *sender, const char *signal, const char *receiver, const char *slot) {
        return QByteArray("<connection><sender>") + sender + "</sender><signal>" + signal + "</signal><receiver>" +
               receiver + "</receiver><slot>" + slot + "</slot></connection>";
    };
    const QString path = writeForm(
        formText(QString(), {},
                 wire("nobody", "clicked()", "label", "clear()") + wire("button", "clicked()", "nobody", "clear()") +
                     wire("button", "smashed()", "label", "clear()") + wire("button", "clicked()", "label", "fill()") +
                     wire("button", "clicked()", "label", "setNum(int)") +
                     wire("button", "clicked( bool )", "label", "clear()")));
    const LoadedForm form = loadForm(path);

    const QStringList expected = {
        path + QStringLiteral(": connection nobody clicked() -> label clear(): there is no sender \"nobody\""),
        path + QStringLiteral(": connection button clicked() -> nobody clear(): there is no receiver \"nobody\""),
        path + QStringLiteral(": connection button smashed() -> label clear(): KelButton has no signal \"smashed()\""),
        path + QStringLiteral(": connection button clicked() -> label fill(): QLabel has no slot \"fill()\""),
        path +
            QStringLiteral(
                ": connection button clicked() -> label setNum(int): clicked() does not give what setNum(int) takes"),
    };
    QCOMPARE(form.complaints, expected);

    auto *label = form.window->findChild<QLabel *>();
    label->setText(QStringLiteral("before"));
    form.window->findChild<KelButton *>()->click();
    QCOMPARE(label->text(), QString());
}

void tst_Panel::screenshotIsSaved()
{
    const QTemporaryDir folder;
    const QString picture = folder.filePath(QStringLiteral("panel.png"));
    const KelRun run = runKel(
        {QStringLiteral("panel"), writeForm(formText(QString())), QStringLiteral("--db=") + m_catalogue.path(),
         QStringLiteral("--screenshot"), picture},
        {}, {QStringLiteral("QT_QPA_PLATFORM="), QStringLiteral("DISPLAY="), QStringLiteral("WAYLAND_DISPLAY=")});
    QVERIFY2(run.exitCode == 0, run.errors.constData());
    QVERIFY(!QImage(picture).isNull());
}

void tst_Panel::wrongFormIsOneLine_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("error");

    QTest::newRow("empty") << QByteArray() << QByteArray("x.ui:1: ");
    QTest::newRow("no XML") << QByteArray("hello") << QByteArray("x.ui:1: ");
    QTest::newRow("garbage") << QByteArray("\x00\xff\x13<<", 5) << QByteArray("x.ui:1: ");
    QTest::newRow("cut off") << formText(QString()).left(300) << QByteArray("x.ui:1: ");
    QTest::newRow("unknown class") << QByteArray("<ui><widget class='Teapot'/></ui>")
                                   << QByteArray("x.ui:1: unknown widget class \"Teapot\"");
    QTest::newRow("nested 100,000 deep") << "<ui>" + QByteArray("<widget class='QWidget'>").repeated(100000)
                                         << QByteArray("x.ui:1: more than 200 elements inside each other");
}

void tst_Panel::wrongFormIsOneLine()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, error);

    const KelRun run = runKel({QStringLiteral("panel"), writeForm(text)});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.errorLines().size(), 1);
    QVERIFY2(run.errors.contains(error), run.errors.constData());

    const KelRun missing = runKel({QStringLiteral("panel"), QStringLiteral("/nowhere/no.ui")});
    QCOMPARE(missing.exitCode, 1);
    QCOMPARE(missing.errors, QByteArray("kel: /nowhere/no.ui: No such file or directory\n"));
}

void tst_Panel::wrongCatalogueIsOneLine_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("error");

    QFile file(m_catalogue.path());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray good = file.readAll();
    QTest::newRow("garbage") << QByteArray(5000, 'x') << QByteArray("bad.sqlite: not a readable catalogue");
    QTest::newRow("empty") << QByteArray() << QByteArray("bad.sqlite: not a catalogue: it has no table \"devices\"");
    QTest::newRow("truncated") << good.left(good.size() / 2) << QByteArray("bad.sqlite: ");
    QTest::newRow("header only") << good.left(100) << QByteArray("bad.sqlite: ");
}

void tst_Panel::wrongCatalogueIsOneLine()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, error);
    m_catalogue.writeFile(QStringLiteral("bad.sqlite"), content);
    const QString form = writeForm(formText(QString()));
    const QString path = m_catalogue.filePath(QStringLiteral("bad.sqlite"));

    const KelRun run = runKel({QStringLiteral("panel"), form, QStringLiteral("--db=") + path});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.errorLines().size(), 1);
    QVERIFY2(run.errors.contains(error), run.errors.constData());
    QCOMPARE(QFileInfo(path).size(), content.size());

    const QString missing = m_catalogue.filePath(QStringLiteral("no.sqlite"));
    const KelRun none = runKel({QStringLiteral("panel"), form, QStringLiteral("--db=") + missing});
    QCOMPARE(none.exitCode, 1);
    QCOMPARE(none.errors, "kel: " + missing.toLocal8Bit() + ": there is no such catalogue\n");
    QVERIFY(!QFileInfo::exists(missing));
}

void tst_Panel::lockedCatalogueIsTold()
{
    TempCatalogue catalogue;
    catalogue.run(QStringLiteral("BEGIN EXCLUSIVE"));
    const KelRun run =
        runKel({QStringLiteral("panel"), writeForm(formText(QString())), QStringLiteral("--db=") + catalogue.path()});
    catalogue.run(QStringLiteral("ROLLBACK"));

    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.errors, "kel: " + catalogue.path().toLocal8Bit() + ": the catalogue is locked by another program\n");
}

void tst_Panel::wrongPathIsOneLine_data()
{
    pathThatCannotBeOpenedIsTold_data();
}

void tst_Panel::wrongPathIsOneLine()
{
    QFETCH(QString, path);
    QFETCH(QString, error);
    const QByteArray twitch = "<property name='twitchGPIO'><bool>false</bool></property>";
    const KelRun run = runKel(
        {QStringLiteral("panel"), writeForm(formText(path, twitch)), QStringLiteral("--db=") + m_catalogue.path()});

    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.errorLines().size() == 1, run.errors.constData());
    QVERIFY2(run.errors.contains("x.ui: device: "), run.errors.constData());
    QVERIFY2(run.errors.contains(error.toLatin1()), run.errors.constData());
}

void tst_Panel::secondProgramOnOnePortIsTold()
{
    PtyPair line;
    const QString path = QStringLiteral("gser://0:0:0:%1:115200:8:N:1").arg(line.path());
    QVERIFY(Kel::connection.open(path));
    const KelRun run =
        runKel({QStringLiteral("panel"), writeForm(formText(path)), QStringLiteral("--db=") + m_catalogue.path()});
    Kel::connection.close(path);

    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.errorLines().size() == 1, run.errors.constData());
    QVERIFY2(run.errors.contains(line.path().toLocal8Bit()), run.errors.constData());
}

void tst_Panel::pictureThatCannotBeWrittenIsTold()
{
    const QString form = writeForm(formText(QString()));
    for (const char *picture : {"/nowhere/at/all.png", "/tmp/panel.txt"}) {
        const KelRun run =
            runKel({QStringLiteral("panel"), form, QStringLiteral("--screenshot"), QLatin1String(picture)});
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.errors.startsWith(QByteArray("kel: ") + picture + ": "), run.errors.constData());
        QVERIFY(!QFileInfo::exists(QLatin1String(picture)));
    }
}

void tst_Panel::catalogueIsReadAfterTheFirstFrame()
{
    Kel::commandsDB.packets.clear();
    Kel::commandsDB.devices.clear();
    openCatalogueUnread(m_catalogue.path(), CatalogueCheck::Pages);
    QVERIFY(Kel::commandsDB.database.isOpen());
    QVERIFY(Kel::commandsDB.devices.isEmpty());
    QWidget window;
    KelButton button(&window);
    button.setCommand(QStringLiteral("hall.on()"));
    readCatalogueAfterFirstFrame(window, m_catalogue.path(),
                                 [](const CommandError &wrong) { qFatal("%s", wrong.what()); });
    QCoreApplication::processEvents();
    QVERIFY(Kel::commandsDB.devices.isEmpty());
    window.show();
    QTRY_VERIFY(!Kel::commandsDB.devices.isEmpty());
    QVERIFY(Kel::commandsDB.hasPacket(QStringLiteral("hall"), QStringLiteral("on")));
    Kel::commandsDB.devices.clear();
    window.update();
    QTest::qWait(1);
    QVERIFY(Kel::commandsDB.devices.isEmpty()); // once
    openCatalogue(m_catalogue.path());
}

KEL_TEST_MAIN(tst_Panel)
#include "tst_panel.moc"
