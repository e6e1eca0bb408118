#include "kelprocess.h"
#include "ptypair.h"
#include "tempcatalogue.h"
#include "testmain.h"

#include <catalogue/cataloguefiles.h>
#include <command.h>
#include <traffic/logfollower.h>
#include <traffic/trafficdecoder.h>

#include <QFile>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

/// What kel monitor shows of ports and logs, and what it knows about the bytes.
class tst_Monitor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void messageIsNamed_data();
    void messageIsNamed();
    void onlyTheWantedInstanceIsNamed();
    void notesAndStrangersStayAsTheyAre();
    void logIsShownOnce();
    void lostLinesAreTold();
    void sourceServesAsCatalogue();
    void logIsFollowed();
    void cutLogIsReadAgain();
    void badLineEndsTheFollowing();
    void serialPortIsListenedTo();
    void networkIsListenedTo();
    void nothingIsWrittenToThePort();
    void queuedPathMovesNoPin();
    void panelKeepsALog();
    void wrongInputIsOneLine_data();
    void wrongInputIsOneLine();

private:
    QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }
    QString write(const char *name, const QByteArray &text) const;

    TempCatalogue m_catalogue;
    QTemporaryDir m_folder;
};

Q_DECLARE_METATYPE(TrafficEntry::Direction)

namespace
{

using Direction = TrafficEntry::Direction;

/// A program whose files cannot grow, as on a full disk.
class ProcessOfShortFiles : public QProcess
{
protected:
    void setupChildProcess() override
    {
        constexpr rlimit Few = {10, 10};
        ::signal(SIGXFSZ, SIG_IGN);
        ::setrlimit(RLIMIT_FSIZE, &Few);
    }
};

/// What the program has printed, waited for.
bool prints(QProcess &process, QByteArray &said, const char *text)
{
    for (int i = 0; i < 400 && !said.contains(text); ++i) {
        process.waitForReadyRead(50);
        said += process.readAllStandardOutput();
    }
    return said.contains(text);
}

void stop(QProcess &process)
{
    process.terminate();
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 0);
}

/// \a said without the times at the front of its lines.
QByteArray withoutTimes(const QByteArray &said)
{
    QByteArray text;
    for (const QByteArray &line : said.trimmed().split('\n'))
        text += line.mid(14) + '\n';
    return text;
}

} // namespace

void tst_Monitor::initTestCase()
{
    m_catalogue.addVendor(1, QStringLiteral("Acme"));
    m_catalogue.addDevice(3, QStringLiteral("Relay"), 1);
    m_catalogue.addCurrent(5, 3, QStringLiteral("Hall"), 7);
    m_catalogue.addCurrent(6, 3, QStringLiteral("Porch"), 8);
    m_catalogue.addCommand(11, 3, QStringLiteral("A1 %id 01"), QStringLiteral("toggle"));
    m_catalogue.addCommand(12, 3, QStringLiteral("A1 %id %0 %(a1*2)"), QStringLiteral("set"));
    m_catalogue.addCommand(13, 3, QStringLiteral("A1 %id %0 %(254/2)"), QStringLiteral("half"));
    m_catalogue.addCurrent(7, 4, QStringLiteral("Attic"), 300);
    m_catalogue.addCommand(19, 4, QStringLiteral("B1 %id"), QStringLiteral("second"));
    m_catalogue.addCommand(18, 4, QStringLiteral("B1 %id"), QStringLiteral("first"));
    m_catalogue.addCommand(17, 4, QStringLiteral("B2 1FF on %x -1"));
    m_catalogue.addCommand(16, 4, QStringLiteral("B3 %0"));
    m_catalogue.addAnswer(26, 4, QStringLiteral("B3 %1"));
    m_catalogue.addAnswer(27, 4, QStringLiteral("B1 %0"));
    m_catalogue.addAnswer(28, 4, QStringLiteral("B1 2C"));
    m_catalogue.addAnswer(29, 4, QStringLiteral("B4 %id"));
    m_catalogue.addAnswer(22, 3, QStringLiteral("A2 %id 01"), QStringLiteral("is on"));
    m_catalogue.addAnswer(21, 3, QStringLiteral("A2 %id %0"), QStringLiteral("says"));
    m_catalogue.addAnswer(23, 3, QStringLiteral("A1 %id 01 00"));
}

QString tst_Monitor::write(const char *name, const QByteArray &text) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("cannot write %s", name);
    return file.fileName();
}

void tst_Monitor::messageIsNamed_data()
{
    QTest::addColumn<QString>("end");
    QTest::addColumn<Direction>("direction");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Direction>("becomes");
    QTest::addColumn<QString>("remark");

    const auto row = [](const char *name, const char *end, Direction direction, const char *bytes, Direction becomes,
                        const char *remark) {
        QTest::newRow(name) << QString::fromLatin1(end) << direction << QByteArray::fromHex(bytes) << becomes
                            << QString::fromLatin1(remark);
    };
    row("command", "panel", Direction::Sent, "a10701", Direction::Sent, "Hall: command 11, toggle");
    row("command of another instance", "panel", Direction::Sent, "a10801", Direction::Sent,
        "Porch: command 11, toggle");
    row("command at the device", "device", Direction::Received, "a10701", Direction::Received,
        "Hall: command 11, toggle");
    row("arguments, and any value of an expression", "panel", Direction::Sent, "a1070509", Direction::Sent,
        "Hall: command 12, set (%0 = 5)");
    row("expression without arguments is a fixed byte", "panel", Direction::Sent, "a107057f", Direction::Sent,
        "Hall: command 13, half (%0 = 5)");
    row("answer as a panel takes it, by number", "panel", Direction::Received, "a20701", Direction::Received,
        "Hall: answer 21, says (%0 = 1)");
    row("answer at the device", "device", Direction::Sent, "a20702", Direction::Sent, "Hall: answer 21, says (%0 = 2)");
    row("answer without a description", "panel", Direction::Received, "a1070100", Direction::Received,
        "Hall: answer 23");
    row("heard command", "line", Direction::Unknown, "a10701", Direction::Sent, "Hall: command 11, toggle");
    row("heard answer", "line", Direction::Unknown, "a20703", Direction::Received, "Hall: answer 21, says (%0 = 3)");
    row("heard what is more surely an answer", "line", Direction::Unknown, "a1070100", Direction::Received,
        "Hall: answer 23");
    row("heard what is as surely a command as an answer", "line", Direction::Unknown, "b305", Direction::Sent,
        "Attic: command 16 (%0 = 5)");
    row("heard what is more surely a command", "line", Direction::Unknown, "b12c", Direction::Sent,
        "Attic: command 18, first");
    row("of equal commands the first by number, and the low byte of an id", "panel", Direction::Sent, "b12c",
        Direction::Sent, "Attic: command 18, first");
    row("words of a command as a device reads them", "panel", Direction::Sent, "b2ff0009ff", Direction::Sent,
        "Attic: command 17 (%0 = 9)");
    row("an id above 255 is in no answer", "panel", Direction::Received, "b42c", Direction::Received, "old");
    row("a command is no answer", "panel", Direction::Received, "a10701", Direction::Received, "old");
    row("unknown", "line", Direction::Unknown, "ee", Direction::Unknown, "old");
    row("too short", "panel", Direction::Sent, "a107", Direction::Sent, "old");
    row("nothing", "panel", Direction::Sent, "", Direction::Sent, "old");
}

void tst_Monitor::messageIsNamed()
{
    QFETCH(QString, end);
    QFETCH(Direction, direction);
    QFETCH(QByteArray, bytes);
    QFETCH(Direction, becomes);
    QFETCH(QString, remark);
    TrafficEntry entry;
    entry.end = end;
    entry.direction = direction;
    entry.bytes = bytes;
    entry.remark = QStringLiteral("old");
    TrafficDecoder(AnyCatalogue::read(m_catalogue.path()).data).explain(entry);
    QCOMPARE(entry.remark, remark);
    QCOMPARE(entry.direction, becomes);
    QCOMPARE(entry.bytes, bytes);
}

void tst_Monitor::onlyTheWantedInstanceIsNamed()
{
    const CatalogueData data = AnyCatalogue::read(m_catalogue.path()).data;
    for (const char *wanted : {"Porch", "6"}) {
        const TrafficDecoder decoder(data, QLatin1String(wanted));
        TrafficEntry entry;
        entry.end = QStringLiteral("panel");
        entry.direction = Direction::Sent;
        entry.bytes = QByteArray::fromHex("a10801");
        decoder.explain(entry);
        QCOMPARE(entry.remark, QStringLiteral("Porch: command 11, toggle"));
        entry.bytes = QByteArray::fromHex("a10701");
        entry.remark.clear();
        decoder.explain(entry);
        QCOMPARE(entry.remark, QString());
    }
    QVERIFY_EXCEPTION_THROWN(TrafficDecoder(data, QStringLiteral("Cellar")), CommandError);
}

void tst_Monitor::notesAndStrangersStayAsTheyAre()
{
    TrafficEntry note;
    note.remark = QStringLiteral("press a");
    TrafficDecoder().explain(note);
    QCOMPARE(note.remark, QStringLiteral("press a"));
    QCOMPARE(note.direction, Direction::Note);
}

void tst_Monitor::logIsShownOnce()
{
    const QString log = write("a.log", "# kel traffic log, 2026-03-14\n"
                                       "22:57:18.832  panel  -> A1 07 01  relay\n"
                                       "22:57:18.900  panel  -- a note\n"
                                       "22:57:18.999  panel  -> EE  stranger\n");
    const KelRun run = runKel({QStringLiteral("monitor"), log, QStringLiteral("--once"), QStringLiteral("--db"),
                               m_catalogue.path(), QStringLiteral("--log"), path("b.log")});
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.output, QByteArray("22:57:18.832  panel  -> A1 07 01  Hall: command 11, toggle\n"
                                    "22:57:18.900  panel  -- a note\n"
                                    "22:57:18.999  panel  -> EE  stranger\n"));
    QFile copy(path("b.log"));
    QVERIFY(copy.open(QIODevice::ReadOnly));
    QVERIFY(copy.readLine().startsWith("# kel traffic log, "));
    QCOMPARE(copy.readAll(), run.output);
}

void tst_Monitor::lostLinesAreTold()
{
    const QStringList once{QStringLiteral("monitor"), write("a.log", "22:57:18.832  panel  -> A1 07 01  relay\n"),
                           QStringLiteral("--once")};
    QProcess toFullDisk;
    setUpKel(toFullDisk, once);
    toFullDisk.setStandardOutputFile(QStringLiteral("/dev/full"));
    toFullDisk.start();
    QVERIFY(toFullDisk.waitForFinished());
    QCOMPARE(toFullDisk.readAllStandardError(), QByteArray("kel: cannot write to standard output\n"));
    QCOMPARE(toFullDisk.exitCode(), 1);

    const QString log = path("short.log");
    ProcessOfShortFiles toShortFile;
    setUpKel(toShortFile, once + QStringList{QStringLiteral("--log"), log});
    toShortFile.start();
    QVERIFY(toShortFile.waitForFinished());
    QCOMPARE(toShortFile.readAllStandardError(),
             "kel: " + log.toLocal8Bit() + ": File too large\nkel: the log lacks lines\n");
    QCOMPARE(toShortFile.readAllStandardOutput(), QByteArray("22:57:18.832  panel  -> A1 07 01  relay\n"));
    QCOMPARE(toShortFile.exitCode(), 1);
}

void tst_Monitor::sourceServesAsCatalogue()
{
    const QByteArray text = "vendors = [{id = 1, name = \"Acme\"}]\n"
                            "devices = [{id = 3, name = \"Relay\", vendor = \"Acme\"}]\n"
                            "commands = [{id = 11, device = \"Relay\", command = \"EE %id\"}]\n"
                            "instances = [{id = 5, device = \"Relay\", name = \"Hall\", device_id = 7}]\n";
    const QString log = write("a.log", "22:57:18.832  panel  -> EE 07\n");
    const KelRun run = runKel(
        {QStringLiteral("monitor"), log, QStringLiteral("--once"), QStringLiteral("--db"), write("a.toml", text)});
    QCOMPARE(run.output, QByteArray("22:57:18.832  panel  -> EE 07  Hall: command 11\n"));

    const KelRun wrong = runKel({QStringLiteral("monitor"), log, QStringLiteral("--once"), QStringLiteral("--db"),
                                 write("b.toml", text + "x = 1\n")});
    QCOMPARE(wrong.exitCode, 1);
    QVERIFY2(wrong.errors.contains("b.toml:5:1: \"x\" is none of"), wrong.errors.constData());
}

void tst_Monitor::logIsFollowed()
{
    const QString log = write("grow.log", "22:57:18.832  panel  -> A1\n22:57:18.833  panel  -> A");
    LogFollower follower(log);
    QSignalSpy entries(&follower, &LogFollower::entry);
    QVERIFY(follower.readOn());
    QCOMPARE(entries.size(), 1);
    follower.follow();

    QFile file(log);
    QVERIFY(file.open(QIODevice::Append));
    file.write("2 01\n# a remark\n22:57:18.834  panel  <- A3\n");
    file.flush();
    QTRY_COMPARE(entries.size(), 3);
    QCOMPARE(entries.at(1).at(0).value<TrafficEntry>().bytes, QByteArray::fromHex("a201"));
    QCOMPARE(entries.at(2).at(0).value<TrafficEntry>().line, 4);
}

void tst_Monitor::cutLogIsReadAgain()
{
    const QString log = write("cut.log", "22:57:18.832  panel  -> A1\n22:57:18.833  panel  -> A2\n22:57:18.834  panel");
    LogFollower follower(log);
    QSignalSpy entries(&follower, &LogFollower::entry);
    QVERIFY(follower.readOn());
    follower.follow();
    write("cut.log", "22:57:18.832  panel  -> B1\n");
    QTRY_COMPARE(entries.size(), 3);
    QCOMPARE(entries.at(2).at(0).value<TrafficEntry>().bytes, QByteArray("\xb1"));
    QCOMPARE(entries.at(2).at(0).value<TrafficEntry>().line, 1);

    write("new.log", "22:57:18.832  panel  -> B1\n22:57:18.832  panel  -> B2\n22:57:18.832  panel  -> B3\n");
    QCOMPARE(::rename(QFile::encodeName(path("new.log")).constData(), QFile::encodeName(log).constData()), 0);
    QTRY_COMPARE(entries.size(), 6);
}

void tst_Monitor::badLineEndsTheFollowing()
{
    const QString log = write("bad.log", "22:57:18.832  panel  -> A1\n");
    LogFollower follower(log);
    QSignalSpy failures(&follower, &LogFollower::failed);
    QVERIFY(follower.readOn());
    follower.follow();
    QFile file(log);
    QVERIFY(file.open(QIODevice::Append));
    file.write("hello\n22:57:18.832  panel  -> A1\nhello\n");
    file.flush();
    QTRY_COMPARE(failures.size(), 1);
    QCOMPARE(failures.at(0).at(0).toString(),
             log + QStringLiteral(":2: no line of traffic, as \"22:57:18.832  device <- A1 01\""));

    QVERIFY(file.resize(0));
    file.write(QByteArray(300 * 1024, 'x'));
    file.flush();
    LogFollower endless(log);
    QSignalSpy refusals(&endless, &LogFollower::failed);
    QVERIFY(!endless.readOn());
    QCOMPARE(refusals.at(0).at(0).toString(), log + QStringLiteral(":1: longer than 256 KiB"));
}

void tst_Monitor::serialPortIsListenedTo()
{
    PtyPair line;
    QProcess monitor;
    setUpKel(monitor, {QStringLiteral("monitor"), QStringLiteral("ser://%1:9600:8:N:1").arg(line.path()),
                       QStringLiteral("--db"), m_catalogue.path(), QStringLiteral("--log"), path("port.log"),
                       QStringLiteral("--gap"), QStringLiteral("100")});
    monitor.start();
    QByteArray said;
    QVERIFY2(prints(monitor, said, "listens to ser://"), monitor.readAllStandardError().constData());
    QVERIFY(line.write(QByteArray::fromHex("a107")));
    QVERIFY(line.write(QByteArray::fromHex("01")));
    QVERIFY(prints(monitor, said, "toggle\n"));
    QVERIFY(line.write(QByteArray::fromHex("a2072a")));
    QVERIFY(prints(monitor, said, "says"));
    QVERIFY(line.write(QByteArray::fromHex("ee")));
    QVERIFY(prints(monitor, said, "EE\n"));
    stop(monitor);

    const QByteArray shown = withoutTimes(said);
    QCOMPARE(shown, "line   -- listens to ser://" + line.path().toUtf8() +
                        ":9600:8:N:1\n"
                        "line   -> A1 07 01  Hall: command 11, toggle\n"
                        "line   <- A2 07 2A  Hall: answer 21, says (%0 = 42)\n"
                        "line   <> EE\n");
    QFile log(path("port.log"));
    QVERIFY(log.open(QIODevice::ReadOnly));
    log.readLine();
    QCOMPARE(log.readAll(), said);
}

void tst_Monitor::networkIsListenedTo()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    QProcess monitor;
    setUpKel(monitor, {QStringLiteral("monitor"), QStringLiteral("tcp://127.0.0.1:%1").arg(server.serverPort())});
    monitor.start();
    QVERIFY(server.waitForNewConnection(20000));
    QTcpSocket *peer = server.nextPendingConnection();
    QByteArray said;
    QVERIFY(prints(monitor, said, "listens to tcp://"));
    peer->write("\x01\x02");
    QVERIFY(peer->waitForBytesWritten());
    QVERIFY(prints(monitor, said, "line   <> 01 02\n"));
    stop(monitor);
}

void tst_Monitor::nothingIsWrittenToThePort()
{
    PtyPair line;
    QProcess monitor;
    setUpKel(monitor, {QStringLiteral("monitor"), line.path()});
    monitor.start();
    QByteArray said;
    QVERIFY2(prints(monitor, said, "listens to /"), monitor.readAllStandardError().constData());
    QVERIFY(line.write(QByteArray::fromHex("a107")));
    QVERIFY(prints(monitor, said, "<> A1 07\n"));
    QCOMPARE(line.readAll(), QByteArray());

    // The kernel's word on how the port is open: the last digit of the flags is 0 for reading only.
    bool isFound = false;
    const QString descriptors = QStringLiteral("/proc/%1/").arg(monitor.processId());
    struct stat port = {};
    QCOMPARE(::stat(QFile::encodeName(line.path()).constData(), &port), 0);
    for (int i = 3; i < 64; ++i) {
        struct stat open = {};
        const QByteArray name = QFile::encodeName(descriptors + QStringLiteral("fd/%1").arg(i));
        if (::stat(name.constData(), &open) != 0 || open.st_rdev != port.st_rdev || !S_ISCHR(open.st_mode))
            continue;
        QFile info(descriptors + QStringLiteral("fdinfo/%1").arg(i));
        QVERIFY(info.open(QIODevice::ReadOnly));
        const QByteArray text = info.readAll();
        const QByteArray flags = text.mid(text.indexOf("flags:") + 6).trimmed().split('\n').first();
        QCOMPARE(flags.toInt(nullptr, 8) & O_ACCMODE, O_RDONLY);
        isFound = true;
    }
    QVERIFY(isFound);
    stop(monitor);
}

void tst_Monitor::queuedPathMovesNoPin()
{
    // Pin 18 of a chip that is not there would be told on standard error.
    PtyPair line;
    QProcess monitor;
    setUpKel(monitor, {QStringLiteral("monitor"), QStringLiteral("gser://18:0:1:%1:9600:8:N:1").arg(line.path())},
             QString(), {QStringLiteral("KEL_GPIO_CHIP=/nowhere/chip")});
    monitor.start();
    QByteArray said;
    QVERIFY2(prints(monitor, said, "listens to gser://"), monitor.readAllStandardError().constData());
    QVERIFY(line.write("\x01"));
    QVERIFY(prints(monitor, said, "<> 01\n"));
    stop(monitor);
    QCOMPARE(monitor.readAllStandardError(), QByteArray());
}

void tst_Monitor::panelKeepsALog()
{
    PtyPair line;
    const QByteArray form =
        "<ui version='4.0'><class>P</class><widget class='QWidget' name='P'>"
        "<widget class='QTimerWidget' name='timer'><property name='emitID'><number>11</number></property>"
        "<property name='interval'><number>50</number></property></widget>"
        "<widget class='LocalDevice' name='relay'><property name='currentID'><number>5</number></property>"
        "<property name='twitchGPIO'><bool>false</bool></property>"
        "<property name='deviceReadPath'><string>ser://" +
        line.path().toUtf8() + "</string></property></widget></widget></ui>";
    QProcess panel;
    setUpKel(panel, {QStringLiteral("panel"), write("a.ui", form), QStringLiteral("--db"), m_catalogue.path(),
                     QStringLiteral("--log"), path("panel.log"), QStringLiteral("--screenshot"), path("p.png"),
                     QStringLiteral("--after"), QStringLiteral("600000")});
    panel.start();
    const auto content = [this] {
        QFile log(path("panel.log"));
        return log.open(QIODevice::ReadOnly) ? log.readAll() : QByteArray();
    };
    QTRY_VERIFY_WITH_TIMEOUT(content().startsWith("# kel traffic log, "), 20000);
    // Nobody tells when the port is open, and what was written before is lost.
    for (int i = 0; i < 200 && !content().contains("  panel  <- A2 07 2A\n"); ++i) {
        QVERIFY(line.write(QByteArray::fromHex("a2072a")));
        QTest::qWait(100);
    }
    QVERIFY2(content().contains("  panel  <- A2 07 2A\n"), content().constData());
    panel.terminate();
    QVERIFY(panel.waitForFinished());

    const QString form2 = write("b.ui", form);
    const KelRun refused = runKel({QStringLiteral("panel"), form2, QStringLiteral("--log"), form2});
    QCOMPARE(refused.exitCode, 1);
    QVERIFY2(refused.errors.contains("b.ui: is there already and is no traffic log"), refused.errors.constData());
}

void tst_Monitor::wrongInputIsOneLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("error");

    const auto row = [](const char *name, const QStringList &arguments, const char *error) {
        QTest::newRow(name) << arguments << QByteArray(error);
    };
    row("no such file", {QStringLiteral("/nowhere")}, "/nowhere: there is no such port or log");
    row("a folder", {QStringLiteral("/tmp")}, "/tmp: a folder is no port and no log");
    row("no such port", {QStringLiteral("ser:///dev/nowhere:9600")}, "ser:///dev/nowhere:9600: ");
    row("malformed path", {QStringLiteral("ser:///dev/nowhere:fast")}, "ser:///dev/nowhere:fast: ");
    row("unknown kind", {QStringLiteral("smoke://signal")}, "smoke://signal: ");
    row("no port at all", {QStringLiteral("/dev/null")}, "/dev/null: ");
    row("nobody listens", {QStringLiteral("tcp://127.0.0.1:1")}, "tcp://127.0.0.1:1: ");
    row("a file that is no log", {QStringLiteral("LOG")}, "no.log:1: no line of traffic");
    row("device without catalogue", {QStringLiteral("LOG"), QStringLiteral("--device"), QStringLiteral("x")},
        "--device needs the catalogue");
    row("unknown device",
        {QStringLiteral("LOG"), QStringLiteral("--db"), QStringLiteral("DB"), QStringLiteral("--device"),
         QStringLiteral("x")},
        "the catalogue has no instance \"x\"");
    row("no catalogue", {QStringLiteral("LOG"), QStringLiteral("--db"), QStringLiteral("/nowhere")},
        "/nowhere: No such file");
    row("log into itself", {QStringLiteral("LOG"), QStringLiteral("--log"), QStringLiteral("LOG")},
        "no.log: a log cannot be written to itself");
}

void tst_Monitor::wrongInputIsOneLine()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, error);
    arguments.replaceInStrings(QStringLiteral("LOG"), write("no.log", "hello\n"));
    arguments.replaceInStrings(QStringLiteral("DB"), m_catalogue.path());
    const KelRun run = runKel(QStringList{QStringLiteral("monitor")} + arguments);
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.errorLines().size(), 1);
    QVERIFY2(run.errors.contains(error), run.errors.constData());
}

KEL_TEST_MAIN(tst_Monitor)
#include "tst_monitor.moc"
