#include "testmain.h"

#include <command.h>
#include <traffic/trafficlog.h>

#include <QFile>
#include <QTemporaryDir>

/// The format of traffic logs: written, read and refused.
class tst_TrafficLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lineSaysWhoWhenAndWhat_data();
    void lineSaysWhoWhenAndWhat();
    void linesThatAreNoneAreTold_data();
    void linesThatAreNoneAreTold();
    void linesThatDoNotCount_data();
    void linesThatDoNotCount();
    void wholeLogIsRead();
    void firstBadLineEndsTheReading();
    void longLineIsRefused();
    void largeFileIsRefused();
    void namesCannotForgeLines();
    void requestsAreSeenFromBothEnds_data();
    void requestsAreSeenFromBothEnds();
    void fileGetsAHeaderAndGrows();
    void otherFilesStay_data();
    void otherFilesStay();
};

Q_DECLARE_METATYPE(TrafficEntry::Direction)

namespace
{

using Direction = TrafficEntry::Direction;

TrafficEntry entryOf(const QString &end, Direction direction, const QByteArray &bytes, const QString &remark)
{
    TrafficEntry entry;
    entry.time = QTime(22, 57, 18, 832);
    entry.end = end;
    entry.direction = direction;
    entry.bytes = bytes;
    entry.remark = remark;
    return entry;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

void tst_TrafficLog::lineSaysWhoWhenAndWhat_data()
{
    QTest::addColumn<QString>("end");
    QTest::addColumn<Direction>("direction");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("remark");
    QTest::addColumn<QString>("line");

    const QByteArray bytes = QByteArray::fromHex("a100ff");
    QTest::newRow("sent") << "panel" << Direction::Sent << bytes << "relay"
                          << "22:57:18.832  panel  -> A1 00 FF  relay";
    QTest::newRow("received") << "device" << Direction::Received << bytes << ""
                              << "22:57:18.832  device <- A1 00 FF";
    QTest::newRow("heard") << "line" << Direction::Unknown << bytes << ""
                           << "22:57:18.832  line   <> A1 00 FF";
    QTest::newRow("nothing at all") << "panel" << Direction::Sent << QByteArray() << "relay"
                                    << "22:57:18.832  panel  -> nothing  relay";
    QTest::newRow("note") << "panel" << Direction::Note << QByteArray() << "press a  b %1 %2"
                          << "22:57:18.832  panel  -- press a b %1 %2";
    QTest::newRow("remark of two parts") << "panel" << Direction::Sent << bytes << "a: b, c (%0 = 1)"
                                         << "22:57:18.832  panel  -> A1 00 FF  a: b, c (%0 = 1)";
}

void tst_TrafficLog::lineSaysWhoWhenAndWhat()
{
    QFETCH(QString, end);
    QFETCH(Direction, direction);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, remark);
    QFETCH(QString, line);

    QCOMPARE(entryOf(end, direction, bytes, remark).text(), line);
    TrafficEntry read;
    QString error;
    QVERIFY2(read.readLine(line, &error), qPrintable(error));
    QCOMPARE(read.time, QTime(22, 57, 18, 832));
    QCOMPARE(read.end, end);
    QCOMPARE(read.direction, direction);
    QCOMPARE(read.bytes, bytes);
    QCOMPARE(read.remark, remark.simplified());
}

void tst_TrafficLog::linesThatAreNoneAreTold_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("error");

    const QString shape = QStringLiteral("no line of traffic, as \"22:57:18.832  device <- A1 01\"");
    QTest::newRow("words") << "hello" << shape;
    QTest::newRow("no such time") << "25:57:18.832  panel  -> A1" << shape;
    QTest::newRow("time without milliseconds") << "22:57:18  panel  -> A1" << shape;
    QTest::newRow("unknown end") << "22:57:18.832  server -> A1" << shape;
    QTest::newRow("unknown arrow") << "22:57:18.832  panel  => A1" << shape;
    QTest::newRow("nothing behind the arrow") << "22:57:18.832  panel  ->" << shape;
    QTest::newRow("space in front") << " 22:57:18.832  panel  -> A1" << shape;
    const auto bytes = [](const char *text) {
        return QStringLiteral("\"%1\" are no bytes, as \"A1 01\" or \"nothing\"").arg(QLatin1String(text));
    };
    QTest::newRow("no bytes") << "22:57:18.832  panel  -> " << bytes("");
    QTest::newRow("half a byte") << "22:57:18.832  panel  -> A1 1" << bytes("A1 1");
    QTest::newRow("three digits") << "22:57:18.832  panel  -> A11" << bytes("A11");
    QTest::newRow("sign") << "22:57:18.832  panel  -> +1" << bytes("+1");
    QTest::newRow("no digits") << "22:57:18.832  panel  -> GG" << bytes("GG");
    QTest::newRow("other space") << "22:57:18.832  panel  -> A1-01" << bytes("A1-01");
    QTest::newRow("word") << "22:57:18.832  panel  -> nothing more" << bytes("nothing more");
}

void tst_TrafficLog::linesThatAreNoneAreTold()
{
    QFETCH(QString, line);
    QFETCH(QString, error);
    TrafficEntry read;
    QString told;
    QVERIFY(!read.readLine(line, &told));
    QCOMPARE(told, error);
}

void tst_TrafficLog::linesThatDoNotCount_data()
{
    QTest::addColumn<QString>("line");
    QTest::newRow("empty") << "";
    QTest::newRow("blank") << "  \t";
    QTest::newRow("comment") << "# kel traffic log, 2026-03-14";
    QTest::newRow("end of a line of another system") << "\r";
}

void tst_TrafficLog::linesThatDoNotCount()
{
    QFETCH(QString, line);
    TrafficEntry read;
    QString error;
    QVERIFY(read.readLine(line, &error));
    QVERIFY(read.end.isEmpty());
    QCOMPARE(TrafficRecord::fromText(line.toUtf8() + '\n', QStringLiteral("a.log")).entries.size(), 0);
}

void tst_TrafficLog::wholeLogIsRead()
{
    const TrafficRecord record = TrafficRecord::fromText("# kel traffic log, 2026-03-14\n"
                                                         "22:57:18.832  panel  -> A1 01  relay\r\n"
                                                         "\n"
                                                         "22:57:18.999  panel  <- A2",
                                                         QStringLiteral("a.log"));
    QCOMPARE(record.error, QString());
    QCOMPARE(record.entries.size(), 2);
    QCOMPARE(record.entries.at(0).line, 2);
    QCOMPARE(record.entries.at(0).remark, QStringLiteral("relay"));
    QCOMPARE(record.entries.at(1).line, 4);
    QCOMPARE(record.entries.at(1).bytes, QByteArray("\xa2"));
}

void tst_TrafficLog::firstBadLineEndsTheReading()
{
    const TrafficRecord record =
        TrafficRecord::fromText("22:57:18.832  panel  -> A1\n\nSQLite format 3\nx", QStringLiteral("a.log"));
    QCOMPARE(record.error, QStringLiteral("a.log:3: no line of traffic, as \"22:57:18.832  device <- A1 01\""));
    QVERIFY(record.entries.isEmpty());
}

void tst_TrafficLog::longLineIsRefused()
{
    const QByteArray line = "22:57:18.832  panel  -> " + QByteArray("A1 ").repeated(100000);
    QCOMPARE(TrafficRecord::fromText("\n" + line, QStringLiteral("a.log")).error,
             QStringLiteral("a.log:2: longer than 256 KiB"));

    // The longest message that is put together fits.
    const TrafficEntry longest = entryOf(QStringLiteral("panel"), Direction::Sent, QByteArray(65536, 'x'), {});
    const TrafficRecord record = TrafficRecord::fromText(longest.text().toUtf8(), QStringLiteral("a.log"));
    QCOMPARE(record.error, QString());
    QCOMPARE(record.entries.first().bytes, longest.bytes);
}

void tst_TrafficLog::largeFileIsRefused()
{
    QCOMPARE(TrafficRecord::fromText(QByteArray(TrafficRecord::MaxSize + 1, '\n'), QStringLiteral("a.log")).error,
             QStringLiteral("a.log:1: larger than 64 MiB"));
}

void tst_TrafficLog::namesCannotForgeLines()
{
    const QString name = QStringLiteral("a\n22:57:18.832  panel  -> FF\x1b[2J");
    const QString line = entryOf(QStringLiteral("panel"), Direction::Sent, "\x01", name).text();
    QCOMPARE(line, QStringLiteral("22:57:18.832  panel  -> 01  a 22:57:18.832 panel -> FF\\u001b[2J"));
}

void tst_TrafficLog::requestsAreSeenFromBothEnds_data()
{
    QTest::addColumn<QString>("end");
    QTest::addColumn<Direction>("direction");
    QTest::addColumn<bool>("isRequest");

    QTest::newRow("a panel sends") << "panel" << Direction::Sent << true;
    QTest::newRow("a panel receives") << "panel" << Direction::Received << false;
    QTest::newRow("a device receives") << "device" << Direction::Received << true;
    QTest::newRow("a device sends") << "device" << Direction::Sent << false;
    QTest::newRow("a listener counts as a panel") << "line" << Direction::Sent << true;
    QTest::newRow("unknown") << "line" << Direction::Unknown << false;
    QTest::newRow("note") << "device" << Direction::Note << false;
}

void tst_TrafficLog::requestsAreSeenFromBothEnds()
{
    QFETCH(QString, end);
    QFETCH(Direction, direction);
    QFETCH(bool, isRequest);
    QCOMPARE(entryOf(end, direction, {}, {}).isRequest(), isRequest);
}

void tst_TrafficLog::fileGetsAHeaderAndGrows()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.log"));
    const QByteArray header = "# kel traffic log, " + QDate::currentDate().toString(Qt::ISODate).toUtf8() + "\n";
    QFile empty(path); // as mktemp makes one
    QVERIFY(empty.open(QIODevice::WriteOnly));
    empty.close();
    TrafficLog::toFile(QStringLiteral("panel"), path).sent("\xa1", QStringLiteral("relay"));
    const QByteArray first = contentOf(path);
    QVERIFY2(first.startsWith(header), first.constData());
    QVERIFY2(first.endsWith("  panel  -> A1  relay\n"), first.constData());

    const TrafficLog again = TrafficLog::toFile(QStringLiteral("line"), path);
    again.received("\xa2");
    again.note(QStringLiteral("x"));
    const QByteArray second = contentOf(path);
    QVERIFY(second.startsWith(first + header));
    QCOMPARE(second.count('\n'), 5);
    const TrafficRecord record = TrafficRecord::fromText(second, path);
    QCOMPARE(record.error, QString());
    QCOMPARE(record.entries.size(), 3);
}

void tst_TrafficLog::otherFilesStay_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("error");

    QTest::newRow("another file") << "other"
                                  << ": is there already and is no traffic log";
    QTest::newRow("a folder") << "."
                              << ": not a file";
    QTest::newRow("no such folder") << "nowhere/a.log"
                                    << ": No such file or directory";
}

void tst_TrafficLog::otherFilesStay()
{
    QFETCH(QString, path);
    QFETCH(QString, error);
    const QTemporaryDir folder;
    QFile other(folder.filePath(QStringLiteral("other")));
    QVERIFY(other.open(QIODevice::WriteOnly) && other.write("<ui/>\n") == 6);
    other.close();
    QString told;
    try {
        TrafficLog::toFile(QStringLiteral("panel"), folder.filePath(path));
    } catch (const CommandError &thrown) {
        told = QString::fromStdString(thrown.what());
    }
    QCOMPARE(told, folder.filePath(path) + error);
    QCOMPARE(contentOf(other.fileName()), QByteArray("<ui/>\n"));
}

KEL_TEST_MAIN(tst_TrafficLog)
#include "tst_trafficlog.moc"
