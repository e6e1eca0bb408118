#include "ptypair.h"
#include "tempcatalogue.h"
#include "testmain.h"

#include <QSqlQuery>
#include <aboutwindow.h>
#include <baseinitializer.h>
#include <gserial.h>
#include <initabout.h>
#include <kelglobals.h>
#include <picollection.h>
#include <piqt.h>

#include <cstdlib>

class tst_Startup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void loadingInitialises();
    void fullPathsOpenQueuedPorts();
    void globalsAreThereAndClosed();
    void secondInitialiserDoesNothing();
    void refusedPrototypeIsDestroyed();
    void aboutLines();
    void buildLines();
    void aboutIsNotGuarded();
    void exitIsClean_data();
    void exitIsClean();
};

using Lines = AboutWindow::Lines;

static std::vector<PIIODevice *> queuedPorts()
{
    std::vector<PIIODevice *> ports;
    for (PIObject *object : PICollection::groupElements("__PIIODevices__")) {
        if (object->className() == PIString("PIGSerial"))
            ports.push_back(static_cast<PIIODevice *>(object));
    }
    return ports;
}

void tst_Startup::loadingInitialises()
{
    QVERIFY(__Kv_Base_Initializer__::inited);
    QCOMPARE(QCoreApplication::organizationDomain(), QStringLiteral("org"));
    QCOMPARE(QCoreApplication::organizationName(), QStringLiteral("Kel"));
    QCOMPARE(queuedPorts().size(), size_t(1));
    QCOMPARE(PI2QString(queuedPorts().at(0)->name()), QStringLiteral("__S__collection_PIGSerial__"));
}

void tst_Startup::fullPathsOpenQueuedPorts()
{
    const std::unique_ptr<PIIODevice> device(PIIODevice::createFromFullPath("gser://0:0:1:/dev/ttyS0:9600:8:N:1"));
    QVERIFY(device);
    QCOMPARE(PI2QString(device->className()), QStringLiteral("PIGSerial"));
    QVERIFY(device.get() != queuedPorts().at(0));
}

void tst_Startup::globalsAreThereAndClosed()
{
    QVERIFY(!Kel::commandsDB.database.isOpen());
    QVERIFY(Kel::commandsDB.devices.isEmpty());
    QVERIFY(Kel::connection.paths().isEmpty());
    QVERIFY(Kel::connection.errors().isEmpty());
    QCOMPARE(Kel::connection.thread(), QThread::currentThread());
}

void tst_Startup::secondInitialiserDoesNothing()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Acme"));
    QCoreApplication::setOrganizationDomain(QStringLiteral("example.com"));
    const PIIODevice *prototype = queuedPorts().at(0);
    const __Kv_Base_Initializer__ second;
    Q_UNUSED(second)
    QCOMPARE(QCoreApplication::organizationName(), QStringLiteral("Acme"));
    QCOMPARE(QCoreApplication::organizationDomain(), QStringLiteral("example.com"));
    QCOMPARE(queuedPorts().size(), size_t(1));
    QCOMPARE(queuedPorts().at(0), prototype);
}

void tst_Startup::refusedPrototypeIsDestroyed()
{
    const PIIODevice *prototype = queuedPorts().at(0);
    __Kv_Base_Initializer__::inited = false;
    const __Kv_Base_Initializer__ again;
    Q_UNUSED(again)
    QVERIFY(__Kv_Base_Initializer__::inited);
    QCOMPARE(queuedPorts().size(), size_t(1));
    QCOMPARE(queuedPorts().at(0), prototype);
    QCOMPARE(QCoreApplication::organizationName(), QStringLiteral("Kel"));
    QCOMPARE(QCoreApplication::organizationDomain(), QStringLiteral("org"));
}

void tst_Startup::aboutLines()
{
    QVERIFY(AboutWindow::versions().isEmpty());
    initAbout();
    const Lines lines = AboutWindow::versions();
    QCOMPARE(lines.mid(0, 5), Lines({{"Kel", "0.4.3 (build 9999)"},
                                     {"Ui sync", "3"},
                                     {"Loom", "1.17.1 (build 666)"},
                                     {"Qt", QString::fromLatin1(qVersion())},
                                     {"Ember", "2.17.0 (build 666)"}}));
    QCOMPARE(lines.size(), 6);
    QCOMPARE(lines.at(5).first, QStringLiteral("sodium"));
    const QRegularExpression version(QStringLiteral("^[0-9]+(\\.[0-9]+)+$"));
    QVERIFY2(version.match(lines.at(5).second).hasMatch(), qPrintable(lines.at(5).second));
}

void tst_Startup::buildLines()
{
    const Lines lines = AboutWindow::buildInfo();
    QCOMPARE(lines.size(), 4);
    QCOMPARE(lines.at(0).first, QStringLiteral("Arch"));
    QCOMPARE(lines.at(0).second, QSysInfo::buildCpuArchitecture());
    QCOMPARE(lines.at(1).first, QStringLiteral("Compiler"));
    QCOMPARE(lines.at(2).first, QStringLiteral("CMake"));
    QCOMPARE(lines.at(3).first, QStringLiteral("Date"));

    const QRegularExpression compiler(QStringLiteral("^(GNU|Clang|AppleClang) [0-9]+(\\.[0-9]+)+$"));
    const QRegularExpression cmake(QStringLiteral("^[0-9]+\\.[0-9]+\\.[0-9]+"));
    QVERIFY2(compiler.match(lines.at(1).second).hasMatch(), qPrintable(lines.at(1).second));
    QVERIFY2(cmake.match(lines.at(2).second).hasMatch(), qPrintable(lines.at(2).second));
    const QDateTime built = QDateTime::fromString(lines.at(3).second, QStringLiteral("dd.MM.yyyy hh:mm"));
    QVERIFY2(built.isValid(), qPrintable(lines.at(3).second));
}

void tst_Startup::aboutIsNotGuarded()
{
    const Lines versions = AboutWindow::versions();
    const Lines buildInfo = AboutWindow::buildInfo();
    initAbout();
    QCOMPARE(AboutWindow::versions(), versions + versions);
    QCOMPARE(AboutWindow::buildInfo(), buildInfo + buildInfo);
}

// How the child process of exitIsClean() ends, with the catalogue at argv[2] and ports open.
static int endWithEverythingOpen(int argc, char **argv)
{
    QApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString path = arguments.at(3);
    Kel::commandsDB.setDatabase(arguments.at(2));
    if (!Kel::commandsDB.database.isOpen() || Kel::commandsDB.devices.isEmpty() || !Kel::connection.open(path))
        return 2;
    Kel::connection.write(path, PIByteArray("on", 2));

    // A query that still runs when the process ends.
    static QSqlQuery query;
    query = QSqlQuery(QStringLiteral("SELECT id FROM devices"));
    query.next();
    if (arguments.at(1) == QLatin1String("--exit"))
        std::exit(0);
    return 0;
}

void tst_Startup::exitIsClean_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<QString>("device");

    QTest::newRow("return from main, serial port") << "--return"
                                                   << "ser://%1:9600:8:N:1";
    QTest::newRow("return from main, queued port") << "--return"
                                                   << "gser://0:0:1:%1:9600:8:N:1";
    QTest::newRow("exit below main, serial port") << "--exit"
                                                  << "ser://%1:9600:8:N:1";
    QTest::newRow("exit below main, queued port") << "--exit"
                                                  << "gser://0:0:1:%1:9600:8:N:1";
}

void tst_Startup::exitIsClean()
{
    QFETCH(QString, how);
    QFETCH(QString, device);

    TempCatalogue file;
    file.addDevice(1, QStringLiteral("Relay"));
    file.addDevice(2, QStringLiteral("Lamp"));
    file.addObject(10, 1, QStringLiteral("hall"));
    const PtyPair line;

    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), file.filePath(QString())); // one that Qt approves of
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(), {how, file.path(), device.arg(line.path())});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
    // Only the catalogue's own debug line and perhaps the block that the end was too early for; no
    // complaint of Qt's about the late end of its objects.
    QString errors = QString::fromUtf8(process.readAllStandardError());
    errors.remove(QStringLiteral("Port %1 is no longer used: a block of 2 bytes is lost: 6F 6E\n").arg(line.path()));
    QCOMPARE(errors, '"' + file.filePath("cat.var") + "\"\n");
}

int main(int argc, char **argv)
{
    if (argc == 4 && argv[1][0] == '-')
        return endWithEverythingOpen(argc, argv);
    QApplication app(argc, argv);
    tst_Startup test;
    return runKelTest(&test, app.arguments());
}

#include "tst_startup.moc"
