#include "tcppeer.h"

#include <QElapsedTimer>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{

bool isReady(int descriptor, qint64 timeoutMs)
{
    pollfd ready{descriptor, POLLIN, 0};
    return ::poll(&ready, 1, static_cast<int>(qMax<qint64>(timeoutMs, 0))) > 0;
}

void closeDescriptor(int &descriptor)
{
    if (descriptor >= 0)
        ::close(descriptor);
    descriptor = -1;
}

} // namespace

TcpPeer::TcpPeer()
{
    listenAgain();
}

TcpPeer::~TcpPeer()
{
    stopListening();
    hangUp();
}

QString TcpPeer::address() const
{
    return QStringLiteral("127.0.0.1:%1").arg(m_port);
}

void TcpPeer::stopListening()
{
    closeDescriptor(m_listener);
}

void TcpPeer::listenAgain()
{
    stopListening();
    m_listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int isOn = 1;
    ::setsockopt(m_listener, SOL_SOCKET, SO_REUSEADDR, &isOn, sizeof isOn);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<quint16>(m_port));
    socklen_t size = sizeof address;
    auto *generic = reinterpret_cast<sockaddr *>(&address);
    if (::bind(m_listener, generic, size) != 0 || ::listen(m_listener, 5) != 0 ||
        ::getsockname(m_listener, generic, &size) != 0)
        qFatal("no port to listen on");
    m_port = ntohs(address.sin_port);
}

bool TcpPeer::accept(int timeoutMs)
{
    hangUp();
    if (isReady(m_listener, timeoutMs))
        m_client = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
    return m_client >= 0;
}

void TcpPeer::hangUp()
{
    closeDescriptor(m_client);
}

QByteArray TcpPeer::read(int count, int timeoutMs)
{
    QByteArray bytes;
    QElapsedTimer timer;
    timer.start();
    while (bytes.size() < count && isReady(m_client, timeoutMs - timer.elapsed())) {
        QByteArray piece(count - bytes.size(), '\0');
        const ssize_t got = ::recv(m_client, piece.data(), static_cast<size_t>(piece.size()), 0);
        if (got <= 0)
            break;
        bytes += piece.left(static_cast<int>(got));
    }
    return bytes;
}

bool TcpPeer::write(const QByteArray &bytes)
{
    return ::send(m_client, bytes.constData(), static_cast<size_t>(bytes.size()), MSG_NOSIGNAL) == bytes.size();
}
