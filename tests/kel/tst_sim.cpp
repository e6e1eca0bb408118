#include "kelprocess.h"
#include "testmain.h"

#include <simulator/ptyline.h>
#include <simulator/requestsplit.h>
#include <simulator/simulator.h>
#include <traffic/messagegap.h>

#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <memory>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <time.h>
#include <unistd.h>

namespace
{

constexpr int WaitMs = 5000;

const char *const Rules = "device relay id 7\n"
                          "on A1 %id 01\n"
                          "set 1 = 1-a1\n"
                          "wait 20\n"
                          "reply A2 %id %1\n"
                          "on 55 %2\n"
                          "reply %2\n";

/// A line that keeps what was written, and when in ms.
class RecordingLine : public SimulatorLine
{
public:
    explicit RecordingLine(QVector<QPair<QByteArray, qint64>> &written)
        : m_written(written)
    {
        m_clock.start();
    }

    QString name() const override { return QStringLiteral("a list"); }
    bool write(const QByteArray &bytes) override
    {
        m_written.append({bytes, m_clock.elapsed()});
        return true;
    }

private:
    QVector<QPair<QByteArray, qint64>> &m_written;
    QElapsedTimer m_clock;
};

/// The running program, ended as people end it.
class RunningSim
{
public:
    RunningSim(const QTemporaryDir &folder, const QStringList &options, const char *rules = Rules)
    {
        const QString path = folder.filePath(QStringLiteral("x.rules"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            qFatal("no rules file");
        file.write(rules);
        file.close();
        setUpKel(m_process, QStringList{QStringLiteral("sim"), path} + options);
        m_process.start();
    }
    ~RunningSim() { end(); }
    RunningSim(const RunningSim &) = delete;
    RunningSim &operator=(const RunningSim &) = delete;

    /// Waits until the program has printed \a text; false when it does not.
    bool prints(const QByteArray &text)
    {
        while (!m_output.contains(text)) {
            if (!m_process.waitForReadyRead(WaitMs))
                return false;
            m_output += m_process.readAllStandardOutput();
        }
        return true;
    }

    /// The word after "listens on".
    QString place()
    {
        if (!prints("listens on ") || !prints("\n"))
            return QString();
        const int start = m_output.indexOf("listens on ") + 11;
        return QString::fromLatin1(m_output.mid(start, m_output.indexOf('\n', start) - start));
    }

    int end()
    {
        if (m_process.state() != QProcess::Running)
            return -1;
        ::kill(pid_t(m_process.processId()), SIGTERM);
        m_process.waitForFinished(WaitMs);
        return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }

private:
    QProcess m_process;
    QByteArray m_output;
};

/// A serial port as a panel opens it.
class Port
{
public:
    explicit Port(const QString &path)
        : m_descriptor(::open(qPrintable(path), O_RDWR | O_NOCTTY))
    {
    }
    ~Port()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    Port(const Port &) = delete;
    Port &operator=(const Port &) = delete;

    bool isOpen() const { return m_descriptor >= 0; }
    bool write(const QByteArray &bytes) const
    {
        return ::write(m_descriptor, bytes.constData(), size_t(bytes.size())) == bytes.size();
    }
    /// Waits for \a size bytes; fewer when they stay out.
    QByteArray read(int size) const
    {
        QByteArray bytes;
        pollfd state = {m_descriptor, POLLIN, 0};
        while (bytes.size() < size && ::poll(&state, 1, WaitMs) > 0) {
            char byte = 0;
            if (::read(m_descriptor, &byte, 1) != 1)
                break;
            bytes.append(byte);
        }
        return bytes;
    }

private:
    int m_descriptor;
};

QByteArray hex(const char *text)
{
    return QByteArray::fromHex(text);
}

} // namespace

class tst_Sim : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersOnPseudoTerminal();
    void piecesOfARequestBelongTogether();
    void requestsThatRanTogether_data();
    void requestsThatRanTogether();
    void lateReaderAnswersAll();
    void portMayBeClosedAndOpenedAgain();
    void linkLeadsToThePortAndGoes();
    void linkOfAKilledSimulatorIsReplaced();
    void filesAndLivingLinksStay();
    void nobodyListening();
    void endlessMessageIsGivenOut();
    void answersOnTcp();
    void clientsOnTcpShareTheLine();
    void reportsComeByThemselves();
    void messagesOfDifferentDevicesKeepADistance();
    void wrongInputIsOneLine_data();
    void wrongInputIsOneLine();
    void takenTcpPortIsTold();
    void wrongUsageEndsWithTwo();
};

void tst_Sim::answersOnPseudoTerminal()
{
    const QTemporaryDir folder;
    RunningSim sim(folder, {});
    const Port port(sim.place());
    QVERIFY(port.isOpen());

    QVERIFY(port.write(hex("a10701")));
    QCOMPARE(port.read(3), hex("a20701"));
    QVERIFY(sim.prints("device <- A1 07 01  relay\n"));
    QVERIFY(sim.prints("device -> A2 07 01  relay\n"));

    QVERIFY(port.write(hex("a10701")));
    QCOMPARE(port.read(3), hex("a20700"));

    QVERIFY(port.write(hex("a10801")));
    QVERIFY(sim.prints("device <- A1 08 01  no rule for it\n"));
    QCOMPARE(sim.end(), 0);
}

void tst_Sim::piecesOfARequestBelongTogether()
{
    const QTemporaryDir folder;
    RunningSim sim(folder, {QStringLiteral("--gap"), QStringLiteral("300")});
    const Port port(sim.place());

    QVERIFY(port.write(hex("a1")));
    QVERIFY(port.write(hex("07")));
    QVERIFY(port.write(hex("01")));
    QCOMPARE(port.read(3), hex("a20701"));
}

void tst_Sim::requestsThatRanTogether_data()
{
    QTest::addColumn<QStringList>("patterns");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("requests");

    const QStringList two = {"A1 01 %0", "A1 02"};
    QTest::newRow("one") << two << QByteArray("a10105") << QStringList{"a10105"};
    QTest::newRow("two") << two << QByteArray("a10105a102") << QStringList{"a10105", "a102"};
    QTest::newRow("one twice") << two << QByteArray("a102a102") << QStringList{"a102", "a102"};
    QTest::newRow("with a rest") << two << QByteArray("a102a1") << QStringList{"a102a1"};
    QTest::newRow("with a beginning") << two << QByteArray("01a102") << QStringList{"01a102"};
    QTest::newRow("unknown") << two << QByteArray("a103") << QStringList{"a103"};
    QTest::newRow("nothing") << two << QByteArray() << QStringList{""};
    QTest::newRow("no patterns") << QStringList() << QByteArray("a102") << QStringList{"a102"};
    QTest::newRow("the whole counts first") << QStringList{"%0", "%0 %1"} << QByteArray("a102") << QStringList{"a102"};
    QTest::newRow("the earlier counts more")
        << QStringList{"%0 %1", "%0"} << QByteArray("a1a2a3") << QStringList{"a1a2", "a3"};
    QTest::newRow("the earlier leads nowhere")
        << QStringList{"%0 %1", "A1"} << QByteArray("a1a2a3") << QStringList{"a1", "a2a3"};
    QTest::newRow("an empty pattern") << QStringList{"", "A1"} << QByteArray("a1a2") << QStringList{"a1a2"};
    QTest::newRow("too much to look at") << QStringList{"A1"} << QByteArray("a1").repeated(257)
                                         << QStringList{QStringLiteral("a1").repeated(257)};
}

void tst_Sim::requestsThatRanTogether()
{
    QFETCH(QStringList, patterns);
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, requests);
    QVector<AnswerPattern> known;
    for (const QString &pattern : patterns)
        known << AnswerPattern::fromText(pattern, 0);
    QStringList cut;
    for (const QByteArray &request : requestsIn(QByteArray::fromHex(bytes), known))
        cut << QString::fromLatin1(request.toHex());
    QCOMPARE(cut, requests);
}

void tst_Sim::lateReaderAnswersAll()
{
    const QTemporaryDir folder;
    RunningSim sim(folder, {});
    const Port port(sim.place());
    QVERIFY(port.write(hex("a10701a10701")));
    QCOMPARE(port.read(6), hex("a20701a20700"));
    QVERIFY(port.write(hex("a10701a10801"))); // Another's in it.
    QVERIFY(sim.prints("device <- A1 07 01 A1 08 01  no rule for it\n"));
}

void tst_Sim::portMayBeClosedAndOpenedAgain()
{
    const QTemporaryDir folder;
    RunningSim sim(folder, {});
    const QString place = sim.place();
    for (const char byte : {'\x11', '\x12'}) {
        const Port port(place);
        QVERIFY(port.write(QByteArray("\x55", 1) + byte));
        QCOMPARE(port.read(1), QByteArray(1, byte));
    }
}

void tst_Sim::linkLeadsToThePortAndGoes()
{
    const QTemporaryDir folder;
    const QString link = folder.filePath(QStringLiteral("port"));
    RunningSim sim(folder, {QStringLiteral("--link"), link});
    const QString place = sim.place();
    QCOMPARE(QFile::symLinkTarget(link), place);

    QCOMPARE(sim.end(), 0);
    QVERIFY(!QFileInfo(link).isSymLink());
}

void tst_Sim::linkOfAKilledSimulatorIsReplaced()
{
    const QTemporaryDir folder;
    const QString link = folder.filePath(QStringLiteral("port"));
    QVERIFY(QFile::link(QStringLiteral("/dev/pts/no-such-port"), link));

    RunningSim sim(folder, {QStringLiteral("--link"), link});
    const QString place = sim.place();
    QCOMPARE(QFile::symLinkTarget(link), place);
}

void tst_Sim::filesAndLivingLinksStay()
{
    const QTemporaryDir folder;
    const QString rules = folder.filePath(QStringLiteral("x.rules"));
    RunningSim sim(folder, {QStringLiteral("--link"), folder.filePath(QStringLiteral("port"))});
    QVERIFY(!sim.place().isEmpty());

    const KelRun second =
        runKel({QStringLiteral("sim"), rules, QStringLiteral("--link"), folder.filePath(QStringLiteral("port"))});
    QCOMPARE(second.exitCode, 1);
    QCOMPARE(second.errorLines().size(), 1);
    QVERIFY2(second.errors.contains("/port: leads to /dev/pts/"), second.errors.constData());

    const KelRun onFile = runKel({QStringLiteral("sim"), rules, QStringLiteral("--link"), rules});
    QCOMPARE(onFile.exitCode, 1);
    QVERIFY2(onFile.errors.contains("x.rules: File exists"), onFile.errors.constData());
    QVERIFY(QFileInfo(rules).size() > 0);
}

void tst_Sim::nobodyListening()
{
    PtyLine line;
    QVERIFY(!line.write("x"));
    {
        const Port port(line.name());
        QVERIFY(line.write("x"));
        QCOMPARE(port.read(1), QByteArray("x"));
        QSignalSpy received(&line, &SimulatorLine::received);
        QVERIFY(port.write("y"));
        QTRY_COMPARE(received.size(), 1);
    }
    QVERIFY(!line.write("x"));

    // A port that is left alone after use costs next to nothing.
    timespec before = {};
    timespec after = {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &before);
    QTest::qWait(500);
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &after);
    const double usedMs = double(after.tv_sec - before.tv_sec) * 1e3 + double(after.tv_nsec - before.tv_nsec) / 1e6;
    QVERIFY2(usedMs < 50, qPrintable(QString::number(usedMs)));
}

void tst_Sim::endlessMessageIsGivenOut()
{
    MessageGap gap(600000);
    QSignalSpy messages(&gap, &MessageGap::message);
    gap.add(QByteArray(MessageGap::MaxMessageSize - 1, 'x'));
    QCOMPARE(messages.size(), 0);
    gap.add("y");
    QCOMPARE(messages.size(), 1);
    QCOMPARE(messages.at(0).at(0).toByteArray().size(), int(MessageGap::MaxMessageSize));
}

void tst_Sim::answersOnTcp()
{
    const QTemporaryDir folder;
    RunningSim sim(folder, {QStringLiteral("--tcp"), QStringLiteral("0")});
    const QString place = sim.place();
    QVERIFY2(place.startsWith(QLatin1String("tcp://127.0.0.1:")), qPrintable(place));

    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), place.section(QLatin1Char(':'), -1).toUShort());
    QVERIFY(socket.waitForConnected(WaitMs));
    socket.write(hex("5542"));
    QVERIFY(socket.waitForReadyRead(WaitMs));
    QCOMPARE(socket.readAll(), hex("42"));
}

void tst_Sim::clientsOnTcpShareTheLine()
{
    const QTemporaryDir folder;
    RunningSim sim(folder, {QStringLiteral("--tcp"), QStringLiteral("0")});
    const quint16 port = sim.place().section(QLatin1Char(':'), -1).toUShort();
    QTcpSocket first;
    QTcpSocket second;
    for (QTcpSocket *socket : {&first, &second}) {
        socket->connectToHost(QStringLiteral("127.0.0.1"), port);
        QVERIFY(socket->waitForConnected(WaitMs));
        socket->write(hex("5501"));
        QVERIFY(socket->waitForReadyRead(WaitMs));
    }
    first.readAll();
    second.readAll();

    first.write(hex("5543"));
    for (QTcpSocket *socket : {&first, &second}) {
        QByteArray bytes;
        while (!bytes.contains('\x43') && socket->waitForReadyRead(WaitMs))
            bytes += socket->readAll();
        QVERIFY(bytes.contains('\x43'));
    }
}

void tst_Sim::reportsComeByThemselves()
{
    const QTemporaryDir folder;
    RunningSim sim(folder, {}, "device d id 1\nevery 20\nset 1 = a1+1\nreply AA %1 55\n");
    const Port port(sim.place());

    const QByteArray first = port.read(3);
    const QByteArray second = port.read(3);
    QCOMPARE(first.size(), 3);
    QCOMPARE(int(uchar(second.at(1))), int(uchar(first.at(1))) + 1);
}

void tst_Sim::messagesOfDifferentDevicesKeepADistance()
{
    QVector<QPair<QByteArray, qint64>> written;
    const SimulatorRules rules = SimulatorRules::fromText("device a id 1\nevery 100\nreply AA %id\nreply AB %id\n"
                                                          "device b id 2\nevery 100\nreply AA %id\n",
                                                          QStringLiteral("x"));
    const Simulator simulator(rules, std::make_unique<RecordingLine>(written), 20,
                              TrafficLog(QStringLiteral("device")));
    QTRY_VERIFY(written.size() >= 3);

    QCOMPARE(written.at(0).first, QByteArray::fromHex("AA01"));
    QCOMPARE(written.at(1).first, QByteArray::fromHex("AB01"));
    QCOMPARE(written.at(2).first, QByteArray::fromHex("AA02"));
    // Two gaps; a timer may be a millisecond early.
    QVERIFY2(written.at(2).second - written.at(1).second >= 38, qPrintable(QString::number(written.at(2).second)));
}

void tst_Sim::wrongInputIsOneLine_data()
{
    QTest::addColumn<QByteArray>("rules");
    QTest::addColumn<QByteArray>("error");

    QTest::newRow("wrong line") << QByteArray("device d id 1\non XY\n")
                                << QByteArray("x.rules:2: \"XY\" is not a byte (00 to FF), %id or %NUMBER");
    QTest::newRow("wrong expression") << QByteArray("device d id 1\nset 1 = nothing\n")
                                      << QByteArray("x.rules:2: (nothing): ");
    QTest::newRow("garbage") << QByteArray("\xff\0\x01 SQLite", 10) << QByteArray("x.rules:1: ");
    QTest::newRow("too large") << QByteArray(2 * 1024 * 1024, '\n')
                               << QByteArray("x.rules: larger than 1 MiB, so hardly a rules file");
}

void tst_Sim::wrongInputIsOneLine()
{
    QFETCH(QByteArray, rules);
    QFETCH(QByteArray, error);
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("x.rules")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(rules);
    file.close();

    const KelRun run = runKel({QStringLiteral("sim"), file.fileName()});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.errorLines().size(), 1);
    QVERIFY2(run.errors.contains(error), run.errors.constData());

    const KelRun missing = runKel({QStringLiteral("sim"), folder.filePath(QStringLiteral("no.rules"))});
    QCOMPARE(missing.exitCode, 1);
    QVERIFY2(missing.errors.contains("no.rules: No such file"), missing.errors.constData());
}

void tst_Sim::takenTcpPortIsTold()
{
    const QTemporaryDir folder;
    QTcpServer other;
    QVERIFY(other.listen(QHostAddress::LocalHost));
    QFile file(folder.filePath(QStringLiteral("x.rules")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(Rules);
    file.close();

    const QString port = QString::number(other.serverPort());
    const KelRun run = runKel({QStringLiteral("sim"), file.fileName(), QStringLiteral("--tcp"), port});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.errorLines().size(), 1);
    QVERIFY2(run.errors.contains("TCP port " + port.toLatin1() + ": "), run.errors.constData());
}

void tst_Sim::wrongUsageEndsWithTwo()
{
    QCOMPARE(runKel({QStringLiteral("sim")}).exitCode, 2);
    QCOMPARE(
        runKel({QStringLiteral("sim"), QStringLiteral("x"), QStringLiteral("--tcp"), QStringLiteral("70000")}).exitCode,
        2);
}

KEL_TEST_MAIN(tst_Sim)
#include "tst_sim.moc"
