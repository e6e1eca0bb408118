#include "ptypair.h"
#include "stderrcapture.h"
#include "tcppeer.h"
#include "testmain.h"

#include <gserial.h>
#include <piqt.h>
#include <qpiconnection.h>

#include <chrono>
#include <memory>
#include <thread>

namespace
{

/// Made before the application object, as the library's own is.
QPIConnection earlyConnection(QStringLiteral("early"));

QString serPath(const PtyPair &pty)
{
    return QStringLiteral("ser://") + pty.path();
}

PIByteArray block(const QByteArray &bytes)
{
    return Q2PIByteArray(bytes);
}

QByteArrayList messages(const QSignalSpy &spy)
{
    QByteArrayList list;
    for (const QVariantList &arguments : spy)
        list << arguments.at(1).toByteArray();
    return list;
}

/// Keeps this thread from its events, as a long slot does.
void blockFor(std::chrono::milliseconds time)
{
    std::this_thread::sleep_for(time);
}

} // namespace

class tst_Connection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasItsName();
    void globalCarriesBytes();
    void carriesBytesBothWays();
    void carriesBytesToATcpPeer();
    void onePathIsOneDevice();
    void sameSettingsAreOneDevice();
    void closesWithTheLastUser();
    void unknownPathsAreHarmless();
    void whatDoesNotOpenIsNamed_data();
    void whatDoesNotOpenIsNamed();
    void portInUseIsNamed();
    void silenceEndsAMessage();
    void gapIsSettable();
    void noGapMakesEachPieceAMessage();
    void piecesOfOneMessageStayTogether();
    void busyThreadDoesNotGlueMessages();
    void arrivesOnTheOwnersThread();
    void slotThatRunsEventsGetsThemInOrder();
    void stuckPortHoldsUpNobody();
    void closingSendsWhatWaits();
    void slotMayClose();
    void vanishedPortReturns();
    void queuedPortIsReachable();
    void blockForAPortThatIsAwayIsTold();
    void blocksThatWaitAtClosingAreTold();
    void destroyedWhileOpen();
};

void tst_Connection::hasItsName()
{
    QCOMPARE(QPIConnection(QStringLiteral("panel")).name(), QStringLiteral("panel"));
    QVERIFY(QPIConnection().name().isEmpty());
}

void tst_Connection::globalCarriesBytes()
{
    PtyPair pty;
    const QSignalSpy received(&earlyConnection, &QPIConnection::messageReceived);
    QVERIFY(earlyConnection.open(serPath(pty)));
    QVERIFY(pty.write("early"));
    QTRY_COMPARE(messages(received), QByteArrayList{"early"});
    // Stays open to the end of the process, which must end cleanly all the same.
}

void tst_Connection::carriesBytesBothWays()
{
    PtyPair pty;
    QPIConnection connection;
    const QSignalSpy received(&connection, &QPIConnection::received);
    const QSignalSpy message(&connection, &QPIConnection::messageReceived);
    QVERIFY(connection.open(serPath(pty)));
    QVERIFY(connection.isOpened(serPath(pty)));
    QCOMPARE(connection.paths(), QStringList(serPath(pty)));
    QVERIFY(connection.device(serPath(pty)) != nullptr);

    QVERIFY(connection.write(serPath(pty), block("to the device")));
    QVERIFY(connection.write(serPath(pty), block(", in order")));
    QCOMPARE(pty.read(23), QByteArray("to the device, in order"));
    QVERIFY(pty.write(QByteArray("an\0swer", 7)));

    QTRY_COMPARE(messages(message), QByteArrayList{QByteArray("an\0swer", 7)});
    QCOMPARE(message.first().first().toString(), serPath(pty));
    QCOMPARE(messages(received).join(), QByteArray("an\0swer", 7));
    QCOMPARE(received.first().first().toString(), serPath(pty));
}

void tst_Connection::carriesBytesToATcpPeer()
{
    TcpPeer peer;
    QPIConnection connection;
    const QSignalSpy message(&connection, &QPIConnection::messageReceived);
    const QString path = QStringLiteral("tcp://") + peer.address();
    QVERIFY(connection.open(path));
    QVERIFY(peer.accept());
    QVERIFY(connection.write(path, block("question")));
    QCOMPARE(peer.read(8), QByteArray("question"));
    QVERIFY(peer.write("answer"));
    QTRY_COMPARE(messages(message), QByteArrayList{"answer"});
}

void tst_Connection::onePathIsOneDevice()
{
    PtyPair pty;
    QPIConnection connection;
    const QSignalSpy message(&connection, &QPIConnection::messageReceived);
    QVERIFY(connection.open(serPath(pty)));
    const PIIODevice *device = connection.device(serPath(pty));
    QVERIFY(connection.open(serPath(pty)));
    QCOMPARE(connection.device(serPath(pty)), device);
    QVERIFY(pty.write("one"));
    QTRY_COMPARE(messages(message), QByteArrayList{"one"});
}

void tst_Connection::sameSettingsAreOneDevice()
{
    PtyPair pty;
    QPIConnection connection;
    const QSignalSpy message(&connection, &QPIConnection::messageReceived);
    const QString spelledOut = serPath(pty) + QStringLiteral(":115200:8:N:1");
    QVERIFY(connection.open(serPath(pty)));
    QVERIFY(connection.open(spelledOut));
    QCOMPARE(connection.device(spelledOut), connection.device(serPath(pty)));
    QCOMPARE(connection.paths(), QStringList(serPath(pty)));

    QVERIFY(pty.write("both"));
    QTRY_COMPARE(messages(message), (QByteArrayList{"both", "both"}));
    QCOMPARE(message.at(0).first().toString(), serPath(pty));
    QCOMPARE(message.at(1).first().toString(), spelledOut);
}

void tst_Connection::closesWithTheLastUser()
{
    PtyPair pty;
    QPIConnection connection;
    QVERIFY(connection.open(serPath(pty)));
    QVERIFY(connection.open(serPath(pty)));
    connection.close(serPath(pty));
    QVERIFY(connection.isOpened(serPath(pty)));
    connection.close(serPath(pty));
    QVERIFY(!connection.isOpened(serPath(pty)));
    QVERIFY(connection.paths().isEmpty());
    QVERIFY(!connection.write(serPath(pty), block("x")));
    QCOMPARE(pty.readAll(), QByteArray());

    QVERIFY(connection.open(serPath(pty)));
    connection.closeAll();
    QVERIFY(connection.device(serPath(pty)) == nullptr);
}

void tst_Connection::unknownPathsAreHarmless()
{
    QPIConnection connection;
    connection.close("ser:///dev/never");
    QVERIFY(!connection.isOpened("ser:///dev/never"));
    QVERIFY(!connection.write("ser:///dev/never", block("x")));
    QVERIFY(connection.errors().isEmpty());
}

void tst_Connection::whatDoesNotOpenIsNamed_data()
{
    QTest::addColumn<QString>("path");

    for (const char *path :
         {"", "/dev/ttyS0", "nothing://x", "ser://", "ser:///dev/tty-that-is-not-there", "gser://0:0:0:/dev/never:9600",
          "tcp://nowhere", "tcp://127.0.0.1:1", "ser:///dev/null", "ser:///dev/x:fast"})
        QTest::newRow(path) << QString(path);
}

void tst_Connection::whatDoesNotOpenIsNamed()
{
    QFETCH(QString, path);
    const StderrCapture console;
    QPIConnection connection;
    const QSignalSpy failed(&connection, &QPIConnection::openFailed);

    QVERIFY(!connection.open(path));

    QCOMPARE(connection.errors().size(), 1);
    const QString line = connection.errors().constFirst();
    QVERIFY(line.size() > path.size());
    QVERIFY(!line.contains('\n'));
    // The port's own name stands in the line, whatever the rest of the path.
    const QString port = path.section(QStringLiteral("://"), -1).section(QStringLiteral("0:0:0:"), -1);
    QVERIFY2(line.contains(port.section(':', 0, 0)), qPrintable(line));
    QCOMPARE(failed.size(), 1);
    QCOMPARE(failed.first().at(0).toString(), path);
    QCOMPARE(failed.first().at(1).toString(), line);
    QCOMPARE(console.lines(), QStringList());
    QVERIFY(connection.paths().isEmpty());
    connection.clearErrors();
    QVERIFY(connection.errors().isEmpty());
}

void tst_Connection::portInUseIsNamed()
{
    PtyPair pty;
    PISerial other;
    other.setPath(Q2PIString(pty.path()));
    QVERIFY(other.open());
    QPIConnection connection;
    QVERIFY(!connection.open(serPath(pty)));
    QVERIFY(connection.errors().constFirst().contains("used by another program"));
}

void tst_Connection::silenceEndsAMessage()
{
    PtyPair pty;
    QPIConnection connection;
    const QSignalSpy message(&connection, &QPIConnection::messageReceived);
    QCOMPARE(connection.messageGap(), 20);
    QVERIFY(connection.open(serPath(pty)));
    for (int count = 1; count <= 3; ++count) {
        QVERIFY(pty.write(QByteArray(count, 'x')));
        QTRY_COMPARE(message.size(), count);
    }
    QCOMPARE(messages(message), (QByteArrayList{"x", "xx", "xxx"}));
}

void tst_Connection::gapIsSettable()
{
    PtyPair pty;
    QPIConnection connection;
    const QSignalSpy received(&connection, &QPIConnection::received);
    const QSignalSpy message(&connection, &QPIConnection::messageReceived);
    connection.setMessageGap(100000);
    QVERIFY(connection.open(serPath(pty)));
    QVERIFY(pty.write("first"));
    QTRY_COMPARE(received.size(), 1);
    QTest::qWait(100);
    QCOMPARE(message.size(), 0);

    connection.setMessageGap(1);
    QVERIFY(pty.write("second"));
    QTRY_COMPARE(messages(message), (QByteArrayList{"first", "second"}));
}

void tst_Connection::noGapMakesEachPieceAMessage()
{
    PtyPair pty;
    QPIConnection connection;
    const QSignalSpy received(&connection, &QPIConnection::received);
    const QSignalSpy message(&connection, &QPIConnection::messageReceived);
    connection.setMessageGap(0);
    QVERIFY(connection.open(serPath(pty)));
    QVERIFY(pty.write(QByteArray(20000, 'x')));
    QTRY_COMPARE(messages(received).join().size(), 20000);
    QCOMPARE(messages(message), messages(received));
}

void tst_Connection::piecesOfOneMessageStayTogether()
{
    PtyPair pty;
    QPIConnection connection;
    const QSignalSpy received(&connection, &QPIConnection::received);
    const QSignalSpy message(&connection, &QPIConnection::messageReceived);
    connection.setMessageGap(1000);
    QVERIFY(connection.open(serPath(pty)));
    for (int i = 1; i <= 3; ++i) {
        QVERIFY(pty.write("abc"));
        QTRY_COMPARE(received.size(), i);
    }
    QTRY_COMPARE(messages(message), QByteArrayList{"abcabcabc"});
}

void tst_Connection::busyThreadDoesNotGlueMessages()
{
    PtyPair pty;
    QPIConnection connection;
    const QSignalSpy message(&connection, &QPIConnection::messageReceived);
    QVERIFY(connection.open(serPath(pty)));
    for (const char *text : {"one", "two", "three"}) {
        QVERIFY(pty.write(text));
        blockFor(std::chrono::milliseconds(100));
    }
    QTRY_COMPARE(messages(message), (QByteArrayList{"one", "two", "three"}));
}

void tst_Connection::arrivesOnTheOwnersThread()
{
    PtyPair pty;
    QPIConnection connection;
    QList<QThread *> threads;
    connect(&connection, &QPIConnection::received, [&] { threads << QThread::currentThread(); });
    connect(&connection, &QPIConnection::messageReceived, [&] { threads << QThread::currentThread(); });
    QVERIFY(connection.open(serPath(pty)));
    QVERIFY(pty.write("x"));
    QTRY_COMPARE(threads, (QList<QThread *>{thread(), thread()}));
}

/// As a dialog does that a slot opens.
void tst_Connection::slotThatRunsEventsGetsThemInOrder()
{
    using namespace std::chrono_literals;
    PtyPair pty;
    QPIConnection connection;
    QByteArray order;
    QVERIFY(connection.open(serPath(pty)));
    connect(&connection, &QPIConnection::received, this, [&](const QString &, const QByteArray &bytes) {
        order += bytes;
        if (bytes != "a")
            return;
        QVERIFY(pty.write("c"));
        QTRY_VERIFY(order.contains('c'));
    });
    // Two pieces wait when the first is delivered.
    QVERIFY(pty.write("a"));
    blockFor(50ms);
    QVERIFY(pty.write("b"));
    blockFor(50ms);
    QTRY_VERIFY(order.size() >= 3);
    QCOMPARE(order, QByteArray("abc"));
}

void tst_Connection::stuckPortHoldsUpNobody()
{
    PtyPair pty;
    QPIConnection connection;
    QVERIFY(connection.open(serPath(pty)));
    QElapsedTimer timer;
    timer.start();
    QVERIFY(connection.write(serPath(pty), block(QByteArray(300000, 'x'))));
    QVERIFY(connection.write(serPath(pty), block("more")));
    connection.close(serPath(pty));
    QVERIFY2(timer.elapsed() < 2000, qPrintable(QString::number(timer.elapsed())));
}

void tst_Connection::closingSendsWhatWaits()
{
    PtyPair pty;
    QPIConnection connection;
    QVERIFY(connection.open(serPath(pty)));
    for (int i = 0; i < 10; ++i)
        QVERIFY(connection.write(serPath(pty), block("word ")));
    connection.close(serPath(pty));
    QCOMPARE(pty.readAll().size(), 50);
}

void tst_Connection::slotMayClose()
{
    PtyPair pty;
    QPIConnection connection;
    int calls = 0;
    connect(&connection, &QPIConnection::received, [&] {
        ++calls;
        connection.close(serPath(pty));
    });
    const QSignalSpy message(&connection, &QPIConnection::messageReceived);
    QVERIFY(connection.open(serPath(pty)));
    QVERIFY(pty.write("x"));
    QTRY_COMPARE(calls, 1);
    QTest::qWait(60);
    QCOMPARE(message.size(), 0);
    QVERIFY(!connection.isOpened(serPath(pty)));
}

void tst_Connection::vanishedPortReturns()
{
    PtyPair pty;
    const StderrCapture console;
    QPIConnection connection;
    const QSignalSpy message(&connection, &QPIConnection::messageReceived);
    QVERIFY(connection.open(serPath(pty)));
    pty.vanish();
    QTRY_VERIFY(!connection.isOpened(serPath(pty)));
    pty.comeBack();
    QTRY_VERIFY(connection.isOpened(serPath(pty)));
    QVERIFY(pty.write("here again"));
    QTRY_COMPARE(messages(message), QByteArrayList{"here again"});
    QCOMPARE(console.lines().size(), 1);
}

void tst_Connection::blockForAPortThatIsAwayIsTold()
{
    PtyPair pty;
    QPIConnection connection;
    QVERIFY(connection.open(serPath(pty)));
    const StderrCapture console;
    pty.vanish();
    QTRY_VERIFY(!connection.isOpened(serPath(pty)));
    QVERIFY(connection.write(serPath(pty), block("lost")));
    connection.close(serPath(pty));
    const QString line = serPath(pty) + QStringLiteral(" did not take it: a block of 4 bytes is lost: 6C 6F 73 74");
    QCOMPARE(console.lines().count(line), 1);
}

/// Nobody reads, so the first block is stuck and the second has no turn.
void tst_Connection::blocksThatWaitAtClosingAreTold()
{
    PtyPair pty;
    QPIConnection connection;
    QVERIFY(connection.open(serPath(pty)));
    const StderrCapture console;
    QVERIFY(connection.write(serPath(pty), block(QByteArray(300000, 'x'))));
    QVERIFY(connection.write(serPath(pty), block("next")));
    connection.close(serPath(pty));
    const QStringList lines = console.lines();
    QCOMPARE(lines.filter(QStringLiteral("did not take it: a block of 300000 bytes is lost: 78 78")).size(), 1);
    const QString next = QStringLiteral(" was closed before its turn: a block of 4 bytes is lost: 6E 65 78 74");
    QCOMPARE(lines.count(serPath(pty) + next), 1);
}

void tst_Connection::queuedPortIsReachable()
{
    PtyPair pty;
    QPIConnection connection;
    const PIGSerial ofTheLibrary; // makes sure that the library that brings the kind is loaded
    const QString path = QStringLiteral("gser://0:0:0:%1:115200:8:N:1").arg(pty.path());
    QVERIFY(connection.open(path));
    QVERIFY(connection.write(path, block("queued")));
    QCOMPARE(pty.read(6), QByteArray("queued"));
}

void tst_Connection::destroyedWhileOpen()
{
    PtyPair pty;
    for (int round = 0; round < 10; ++round) {
        QPIConnection connection;
        QVERIFY(connection.open(serPath(pty)));
        QVERIFY(pty.write("bytes on their way"));
        connection.write(serPath(pty), block("bytes"));
    }
    QCoreApplication::processEvents();
}

KEL_TEST_MAIN(tst_Connection)
#include "tst_connection.moc"
