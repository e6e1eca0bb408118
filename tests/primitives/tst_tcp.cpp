#include "inbox.h"
#include "stderrcapture.h"
#include "tcppeer.h"
#include "testmain.h"

#include <pitcp.h>

#include <netdb.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace
{

constexpr int LargeSize = 20000000;

int write(PITcp &tcp, const QByteArray &bytes)
{
    return tcp.write(bytes.constData(), int(bytes.size()));
}

} // namespace

class tst_Tcp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isMadeFromItsFullPath();
    void carriesBytesBothWays();
    void opensByHostName();
    void refusedConnectionIsTold();
    void silentServerIsGivenUp();
    void malformedPathDoesNotOpen();
    void lostConnectionIsToldOnceAndMadeAgain();
    void closedTakesNothing();
    void largeBlockIsWhole();
    void closeIsQuickWhenNobodyReads();
    void destroyedWhileOpen();
};

void tst_Tcp::isMadeFromItsFullPath()
{
    const std::unique_ptr<PIIODevice> device(PIIODevice::createFromFullPath("tcp://[::1]:5020"));
    QVERIFY(device != nullptr);
    QCOMPARE(PI2QString(device->className()), QStringLiteral("PITcp"));
    QCOMPARE(PI2QString(device->path()), QStringLiteral("[::1]:5020"));
    QCOMPARE(PI2QString(device->constructFullPath()), QStringLiteral("tcp://[::1]:5020"));
}

void tst_Tcp::carriesBytesBothWays()
{
    TcpPeer peer;
    PITcp tcp;
    Inbox inbox(tcp);
    tcp.setPath(Q2PIString(peer.address()));
    QVERIFY(tcp.open());
    QVERIFY(tcp.open());
    QVERIFY(peer.accept());
    QVERIFY(tcp.isOpened());

    QCOMPARE(write(tcp, QByteArray("to\0you", 6)), 6);
    QCOMPARE(peer.read(6), QByteArray("to\0you", 6));
    QVERIFY(peer.write("to me"));
    QTRY_COMPARE(inbox.bytes(), QByteArray("to me"));
    QVERIFY(tcp.close());
    QVERIFY(!tcp.isOpened());
}

void tst_Tcp::opensByHostName()
{
    addrinfo *found = nullptr;
    if (getaddrinfo("localhost", nullptr, nullptr, &found) != 0)
        QSKIP("this machine has no name for itself");
    freeaddrinfo(found);
    TcpPeer peer;
    PITcp tcp;
    tcp.setPath(Q2PIString(QStringLiteral("localhost:%1").arg(peer.port())));
    QVERIFY(tcp.open());
}

void tst_Tcp::refusedConnectionIsTold()
{
    TcpPeer peer;
    peer.stopListening();
    PITcp tcp;
    const StderrCapture console;
    tcp.setPath(Q2PIString(peer.address()));

    QVERIFY(!tcp.open());

    QCOMPARE(console.lines().size(), 1);
    QVERIFY(console.lines().constFirst().contains(peer.address()));
    QVERIFY(!tcp.isOpened());
}

void tst_Tcp::silentServerIsGivenUp()
{
    // Nobody accepts, and the system answers only as many clients as it keeps for the server.
    const TcpPeer peer;
    const StderrCapture console;
    std::vector<std::unique_ptr<PITcp>> clients;
    bool isOpen = true;
    QElapsedTimer timer;
    for (int i = 0; i < 100 && isOpen; ++i) {
        clients.push_back(std::make_unique<PITcp>());
        clients.back()->setPath(Q2PIString(peer.address()));
        timer.start();
        isOpen = clients.back()->open();
    }
    QVERIFY(!isOpen);
    // It gets 800 ms; the rest is for a busy machine.
    QVERIFY2(timer.elapsed() < 2500, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(console.lines().constFirst().contains(peer.address()));
}

void tst_Tcp::malformedPathDoesNotOpen()
{
    PITcp tcp;
    const StderrCapture console;
    tcp.setPath("nowhere");
    QVERIFY(!tcp.open());
    QCOMPARE(console.lines().size(), 1);
}

void tst_Tcp::lostConnectionIsToldOnceAndMadeAgain()
{
    TcpPeer peer;
    PITcp tcp;
    Inbox inbox(tcp);
    const StderrCapture console;
    tcp.setPath(Q2PIString(peer.address()));
    QVERIFY(tcp.open());
    QVERIFY(peer.accept());

    peer.stopListening();
    peer.hangUp();
    QTRY_VERIFY(!tcp.isOpened());
    QTest::qWait(500);
    QCOMPARE(console.lines().size(), 1);
    QCOMPARE(write(tcp, "lost"), -1);

    peer.listenAgain();
    QVERIFY(peer.accept());
    QTRY_VERIFY(tcp.isOpened());
    QCOMPARE(write(tcp, "again"), 5);
    QCOMPARE(peer.read(5), QByteArray("again"));
    QVERIFY(peer.write("hello"));
    QTRY_COMPARE(inbox.bytes(), QByteArray("hello"));
}

void tst_Tcp::closedTakesNothing()
{
    TcpPeer peer;
    PITcp tcp;
    tcp.setPath(Q2PIString(peer.address()));
    QCOMPARE(write(tcp, "x"), -1);
    QVERIFY(tcp.open());
    QVERIFY(tcp.close());
    QCOMPARE(write(tcp, "x"), -1);
}

void tst_Tcp::largeBlockIsWhole()
{
    TcpPeer peer;
    PITcp tcp;
    tcp.setPath(Q2PIString(peer.address()));
    QVERIFY(tcp.open());
    QVERIFY(peer.accept());
    QByteArray block(LargeSize, '\0');
    for (int i = 0; i < LargeSize; ++i)
        block[i] = static_cast<char>(i * 7 + i / 251);
    std::atomic<int> result{0};
    std::thread writer([&] { result = write(tcp, block); });
    const QByteArray got = peer.read(LargeSize, 60000);
    writer.join();
    QCOMPARE(result.load(), LargeSize);
    QVERIFY(got == block);
}

void tst_Tcp::closeIsQuickWhenNobodyReads()
{
    TcpPeer peer;
    PITcp tcp;
    tcp.setPath(Q2PIString(peer.address()));
    QVERIFY(tcp.open());
    QVERIFY(peer.accept());
    std::atomic<int> result{0};
    std::thread writer([&] { result = write(tcp, QByteArray(LargeSize, 'x')); });
    QTest::qWait(300);

    QElapsedTimer timer;
    timer.start();
    tcp.close();
    const qint64 elapsed = timer.elapsed();
    writer.join();
    QCOMPARE(result.load(), -1);
    QVERIFY2(elapsed < 1500, qPrintable(QString::number(elapsed)));
}

void tst_Tcp::destroyedWhileOpen()
{
    TcpPeer peer;
    for (int round = 0; round < 10; ++round) {
        PITcp tcp;
        tcp.setPath(Q2PIString(peer.address()));
        QVERIFY(tcp.open());
        QVERIFY(peer.accept());
        QVERIFY(peer.write("bytes on their way"));
    }
}

KEL_TEST_MAIN(tst_Tcp)
#include "tst_tcp.moc"
