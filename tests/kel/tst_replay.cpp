#include "kelprocess.h"
#include "testmain.h"

#include <command.h>
#include <traffic/trafficreplay.h>

#include <QElapsedTimer>
#include <QFile>
#include <QTcpSocket>
#include <QTemporaryDir>

/// A recorded log as a device.
class tst_Replay : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersComeInRecordedOrder();
    void devicesEndIsPlayedToo();
    void delaysGoOverMidnight();
    void openingIsWhatCameFirst();
    void unknownRequestHasNoAnswer();
    void messagesOfUnknownSendersAreLeftOut();
    void logThatCannotBePlayedIsTold_data();
    void logThatCannotBePlayedIsTold();
    void programPlaysALog();
    void programRecordsWhatItPlays();
    void wrongUsageIsTold();

private:
    QString write(const QByteArray &text);

    QTemporaryDir m_folder;
};

namespace
{

TrafficReplay replayOf(const QByteArray &text)
{
    return TrafficReplay(TrafficRecord::fromText(text, QStringLiteral("a.log")), QStringLiteral("a.log"));
}

/// "A2 01@26" for each reply.
QStringList textOf(const QVector<SimulatorReply> &replies)
{
    QStringList texts;
    for (const SimulatorReply &reply : replies)
        texts << QStringLiteral("%1@%2").arg(hexText(reply.bytes), QString::number(reply.delayMs));
    return texts;
}

const QByteArray Toggles = "22:00:00.000  panel  -> A1 01  relay\n"
                           "22:00:00.026  panel  <- A2 01 01\n"
                           "22:00:01.000  panel  -- a note\n"
                           "22:00:01.500  panel  <- A3 01\n"
                           "22:00:02.000  panel  -> A1 02\n"
                           "22:00:03.000  panel  -> A1 01\n"
                           "22:00:03.030  panel  <- A2 01 00\n";

} // namespace

QString tst_Replay::write(const QByteArray &text)
{
    QFile file(m_folder.filePath(QStringLiteral("a.log")));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("cannot write the log");
    return file.fileName();
}

void tst_Replay::answersComeInRecordedOrder()
{
    TrafficReplay replay = replayOf(Toggles);
    QCOMPARE(replay.requests(), 3);
    const QByteArray toggle = QByteArray::fromHex("a101");
    const QStringList first = {QStringLiteral("A2 01 01@26"), QStringLiteral("A3 01@1500")};
    const QStringList second = {QStringLiteral("A2 01 00@30")};
    QCOMPARE(textOf(*replay.answer(toggle)), first);
    QCOMPARE(textOf(*replay.answer(QByteArray::fromHex("a102"))), QStringList());
    QCOMPARE(textOf(*replay.answer(toggle)), second);
    QCOMPARE(textOf(*replay.answer(toggle)), first);
    QCOMPARE(textOf(*replay.answer(toggle)), second);
}

void tst_Replay::devicesEndIsPlayedToo()
{
    TrafficReplay replay = replayOf("22:00:00.000  device <- A1 01  ceiling\n22:00:00.026  device -> A2 01\n");
    QCOMPARE(textOf(*replay.answer(QByteArray::fromHex("a101"))), QStringList{QStringLiteral("A2 01@26")});
}

void tst_Replay::delaysGoOverMidnight()
{
    TrafficReplay replay = replayOf("23:59:59.990  panel  -> A1\n00:00:00.010  panel  <- A2\n"
                                    "05:00:00.000  panel  <- A3\n");
    const QStringList expected = {QStringLiteral("A2@20"), QStringLiteral("A3@3600000")};
    QCOMPARE(textOf(*replay.answer("\xa1")), expected);
}

void tst_Replay::openingIsWhatCameFirst()
{
    const TrafficReplay replay = replayOf("22:00:00.000  panel  <- A3 01\n22:00:01.000  panel  <- A3 02\n"
                                          "22:00:02.000  panel  -> A1\n22:00:02.000  panel  <- A2\n");
    const QStringList expected = {QStringLiteral("A3 01@0"), QStringLiteral("A3 02@1000")};
    QCOMPARE(textOf(replay.opening()), expected);
    QVERIFY(replayOf(Toggles).opening().isEmpty());
}

void tst_Replay::unknownRequestHasNoAnswer()
{
    TrafficReplay replay = replayOf(Toggles);
    QVERIFY(!replay.answer(QByteArray::fromHex("a1")));
    QVERIFY(!replay.answer(QByteArray::fromHex("a10101")));
}

void tst_Replay::messagesOfUnknownSendersAreLeftOut()
{
    TrafficReplay replay = replayOf("22:00:00.000  line   <> EE\n"
                                    "22:00:00.000  line   -> A1\n"
                                    "22:00:00.010  line   <> EE\n"
                                    "22:00:00.020  line   <- A2\n");
    QCOMPARE(replay.requests(), 1);
    QCOMPARE(replay.leftOut(), 2);
    QCOMPARE(textOf(*replay.answer("\xa1")), QStringList{QStringLiteral("A2@20")});
    QVERIFY(replay.opening().isEmpty());
    QVERIFY(!replay.answer("\xee"));
    QCOMPARE(replayOf(Toggles).leftOut(), 0);
}

void tst_Replay::logThatCannotBePlayedIsTold_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("error");

    QTest::newRow("nothing in it") << QByteArray() << ": there is no request in it";
    QTest::newRow("no request") << QByteArray("22:00:00.000  panel  <- A1\n") << ": there is no request in it";
    QTest::newRow("two ends") << QByteArray("22:00:00.000  panel  -> A1\n\n22:00:00.001  device <- A1\n")
                              << ":3: the device's end, after lines of the panel's; keep one of them";
    QTest::newRow("unknown direction") << QByteArray("22:00:00.000  line   <> A1\n")
                                       << ":1: who sent this is not known; with --db kel monitor finds it out";
    QTest::newRow("unknown direction and answers")
        << QByteArray("22:00:00.000  line   <- A1\n22:00:00.000  line   <> A1\n")
        << ":2: who sent this is not known; with --db kel monitor finds it out";
    QTest::newRow("two ends, one unknown") << QByteArray("22:00:00.000  panel  -> A1\n22:00:00.001  line   <> A1\n")
                                           << ":2: the line's end, after lines of the panel's; keep one of them";
    QTest::newRow("no log") << QByteArray("\nhello\n")
                            << ":2: no line of traffic, as \"22:57:18.832  device <- A1 01\"";
}

void tst_Replay::logThatCannotBePlayedIsTold()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, error);
    const QString path = write(text);
    const KelRun run = runKel({QStringLiteral("sim"), QStringLiteral("--replay"), path});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.errors, "kel: " + path.toUtf8() + error.toUtf8() + "\n");
}

void tst_Replay::programPlaysALog()
{
    QProcess sim;
    setUpKel(sim, {QStringLiteral("sim"), QStringLiteral("--replay"),
                   write("22:00:00.000  panel  <- A3 07\n22:00:00.000  panel  <> EE\n" + Toggles),
                   QStringLiteral("--tcp"), QStringLiteral("0")});
    sim.start();
    QByteArray said;
    QTRY_VERIFY_WITH_TIMEOUT((said += sim.readAllStandardOutput()).contains("tcp://127.0.0.1:"), 20000);
    QVERIFY2(said.contains("device -- replays 3 requests\n"), said.constData());
    QVERIFY2(said.contains("device -- leaves out 1 messages whose sender is not known\n"), said.constData());

    QTcpSocket panel;
    panel.connectToHost(QStringLiteral("127.0.0.1"), quint16(said.mid(said.lastIndexOf(':') + 1).trimmed().toUInt()));
    QVERIFY(panel.waitForConnected());
    QByteArray heard;
    const auto hears = [&](const char *bytes) {
        const QByteArray wanted = QByteArray::fromHex(bytes);
        QElapsedTimer timer;
        timer.start();
        while (heard.size() < wanted.size() && timer.elapsed() < 20000) {
            panel.waitForReadyRead(100);
            heard += panel.readAll();
        }
        return heard == wanted;
    };
    QVERIFY2(hears("a307"), heard.toHex().constData()); // without being asked
    const QByteArray toggle = QByteArray::fromHex("a101");
    panel.write(toggle);
    QVERIFY2(hears("a307a20101a301"), heard.toHex().constData());
    panel.write(toggle);
    QVERIFY2(hears("a307a20101a301a20100"), heard.toHex().constData());
    panel.write(QByteArray::fromHex("ee"));
    QTRY_VERIFY_WITH_TIMEOUT((said += sim.readAllStandardOutput()).contains("<- EE  never asked in the log\n"), 20000);
    QVERIFY2(said.contains("device -> A2 01 01\n"), said.constData());

    sim.terminate();
    QVERIFY(sim.waitForFinished());
    QCOMPARE(sim.exitCode(), 0);
}

void tst_Replay::programRecordsWhatItPlays()
{
    // What a simulator prints is a log that can be played again.
    QProcess sim;
    setUpKel(sim, {QStringLiteral("sim"), QStringLiteral("--replay"), write(Toggles), QStringLiteral("--tcp"),
                   QStringLiteral("0")});
    sim.start();
    QByteArray said;
    QTRY_VERIFY_WITH_TIMEOUT((said += sim.readAllStandardOutput()).contains("tcp://127.0.0.1:"), 20000);
    QTcpSocket panel;
    panel.connectToHost(QStringLiteral("127.0.0.1"), quint16(said.mid(said.lastIndexOf(':') + 1).trimmed().toUInt()));
    QVERIFY(panel.waitForConnected());
    panel.write(QByteArray::fromHex("a101"));
    QTRY_VERIFY_WITH_TIMEOUT((said += sim.readAllStandardOutput()).contains("-> A3 01\n"), 20000);
    sim.terminate();
    QVERIFY(sim.waitForFinished());

    TrafficReplay replay = replayOf(said);
    const QVector<SimulatorReply> replies = *replay.answer(QByteArray::fromHex("a101"));
    QCOMPARE(replies.size(), 2);
    QCOMPARE(replies.at(0).bytes, QByteArray::fromHex("a20101"));
    QVERIFY(replies.at(1).delayMs >= 1400);
}

void tst_Replay::wrongUsageIsTold()
{
    const QString log = write(Toggles);
    for (const QStringList &arguments : {QStringList{QStringLiteral("sim")},
                                         QStringList{QStringLiteral("sim"), log, QStringLiteral("--replay"), log}}) {
        const KelRun run = runKel(arguments);
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.errorLines().size(), 1);
    }
    const KelRun missing = runKel({QStringLiteral("sim"), QStringLiteral("--replay"), QStringLiteral("/nowhere/x")});
    QCOMPARE(missing.exitCode, 1);
    QCOMPARE(missing.errors, QByteArray("kel: /nowhere/x: No such file or directory\n"));
}

KEL_TEST_MAIN(tst_Replay)
#include "tst_replay.moc"
