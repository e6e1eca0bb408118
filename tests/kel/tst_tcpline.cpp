#include "command.h"
#include "simulator/tcpline.h"
#include "testmain.h"

#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>

#include <memory>

namespace
{

constexpr int BlockSize = 32 * 1024;
constexpr int MaxBlocks = 4096; // far more than a system keeps for a connection

quint16 portOf(const TcpLine &line)
{
    return line.name().section(QLatin1Char(':'), -1).toUShort();
}

QByteArray block(int number)
{
    return QByteArray(BlockSize, char('a' + number % 26));
}

} // namespace

/// The TCP port of a simulated device, with clients that do as they like.
class tst_TcpLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void clientsHearAndAreHeard();
    void nobodyThereIsNotHeard();
    void clientThatBreaksIsForgotten();
    void readerThatSleepsKeepsNobodyWaiting();
    void endOfTheLineEndsTheConnections();
    void portOfALineThatEndedIsFree();
    void takenPortIsTold();

private:
    std::unique_ptr<QTcpSocket> client(bool isSleeping = false);

    std::unique_ptr<TcpLine> m_line;
};

void tst_TcpLine::init()
{
    m_line = std::make_unique<TcpLine>(0);
}

/// A connected client that the line knows of. One that sleeps takes next to nothing from the system.
std::unique_ptr<QTcpSocket> tst_TcpLine::client(bool isSleeping)
{
    auto socket = std::make_unique<QTcpSocket>();
    if (isSleeping)
        socket->setReadBufferSize(1);
    QSignalSpy heard(m_line.get(), &SimulatorLine::received);
    socket->connectToHost(QHostAddress(QHostAddress::LocalHost), portOf(*m_line));
    if (!socket->waitForConnected())
        qFatal("no connection");
    socket->write("?");
    while (heard.isEmpty() && heard.wait()) {
    }
    return socket;
}

void tst_TcpLine::clientsHearAndAreHeard()
{
    const auto first = client();
    const auto second = client();
    QSignalSpy heard(m_line.get(), &SimulatorLine::received);
    second->write(QByteArray("\0\x55\xff", 3));
    QTRY_COMPARE(heard.size(), 1);
    QCOMPARE(heard.at(0).at(0).toByteArray(), QByteArray("\0\x55\xff", 3));

    QVERIFY(m_line->write("one"));
    QVERIFY(m_line->write("two"));
    QTRY_COMPARE(first->bytesAvailable(), 6);
    QTRY_COMPARE(second->bytesAvailable(), 6);
    QCOMPARE(first->readAll() + second->readAll(), QByteArray("onetwoonetwo"));
}

void tst_TcpLine::nobodyThereIsNotHeard()
{
    QVERIFY(!m_line->write("x"));
    auto guest = client();
    QVERIFY(m_line->write("x"));
    guest.reset();
    QTRY_VERIFY(!m_line->write("x"));
}

void tst_TcpLine::clientThatBreaksIsForgotten()
{
    const auto other = client();
    auto guest = client();
    guest->abort(); // with bytes that wait for it, which the system answers with an error
    QVERIFY(m_line->write("x"));
    QVERIFY(m_line->write("x"));
    QTRY_COMPARE(other->bytesAvailable(), 2);
    other->abort();
    QTRY_VERIFY(!m_line->write("x"));
}

void tst_TcpLine::readerThatSleepsKeepsNobodyWaiting()
{
    const auto sleeper = client(true);
    QByteArray accepted;
    int count = 0;
    for (; count < MaxBlocks && m_line->write(block(count)); ++count)
        accepted += block(count);
    QVERIFY(count > 1);
    QVERIFY(count < MaxBlocks);

    const auto other = client();
    QVERIFY(m_line->write("new"));
    QTRY_COMPARE(other->bytesAvailable(), 3);

    sleeper->setReadBufferSize(0);
    QByteArray got;
    QTRY_COMPARE((got += sleeper->readAll()).size(), accepted.size());
    QCOMPARE(got, accepted); // whole, in order, and without what was sent while there was no room
    QVERIFY(m_line->write("on"));
    QTRY_COMPARE(sleeper->bytesAvailable(), 2);
}

void tst_TcpLine::endOfTheLineEndsTheConnections()
{
    const auto guest = client();
    m_line.reset();
    QTRY_COMPARE(guest->state(), QAbstractSocket::UnconnectedState);
}

void tst_TcpLine::portOfALineThatEndedIsFree()
{
    const auto guest = client();
    const quint16 port = portOf(*m_line);
    m_line.reset();
    QTRY_COMPARE(guest->state(), QAbstractSocket::UnconnectedState);
    m_line = std::make_unique<TcpLine>(port); // the system still remembers the connection
    QCOMPARE(portOf(*m_line), port);
}

void tst_TcpLine::takenPortIsTold()
{
    QTcpServer other;
    QVERIFY(other.listen(QHostAddress::LocalHost));
    const QString port = QString::number(other.serverPort());
    try {
        TcpLine line(other.serverPort());
        QFAIL("it listens");
    } catch (const CommandError &error) {
        QCOMPARE(QString::fromUtf8(error.what()),
                 QStringLiteral("TCP port %1: The bound address is already in use").arg(port));
    }
}

KEL_TEST_MAIN(tst_TcpLine)
#include "tst_tcpline.moc"
