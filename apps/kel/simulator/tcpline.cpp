#include "simulator/tcpline.h"

#include "command.h"

#include <QTcpSocket>

#include <utility>

namespace
{

/// A client that reads nothing gets no more than this kept for it.
constexpr qint64 MaxUnsentBytes = 64 * 1024;

} // namespace

TcpLine::TcpLine(quint16 port, QObject *parent)
    : SimulatorLine(parent)
{
    connect(&m_server, &QTcpServer::newConnection, this, &TcpLine::welcome);
    if (!m_server.listen(QHostAddress::LocalHost, port))
        throw CommandError(QStringLiteral("TCP port %1: %2").arg(QString::number(port), m_server.errorString()));
}

QString TcpLine::name() const
{
    return QStringLiteral("tcp://127.0.0.1:%1").arg(m_server.serverPort());
}

bool TcpLine::write(const QByteArray &bytes)
{
    bool isHeard = false;
    for (QTcpSocket *client : std::as_const(m_clients)) {
        if (client->bytesToWrite() < MaxUnsentBytes)
            isHeard |= client->write(bytes) == bytes.size();
    }
    return isHeard;
}

void TcpLine::welcome()
{
    while (QTcpSocket *client = m_server.nextPendingConnection()) {
        m_clients.append(client);
        connect(client, &QTcpSocket::readyRead, this, [this, client] { Q_EMIT received(client->readAll()); });
        connect(client, &QTcpSocket::disconnected, this, [this, client] {
            m_clients.removeOne(client);
            client->deleteLater();
        });
    }
}
