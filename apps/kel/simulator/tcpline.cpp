#include "simulator/tcpline.h"

#include "command.h"
#include "simulator/tcpclient.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{

constexpr int MaxWaiting = 50; ///< Connections that nobody has welcomed yet.

sockaddr_in thisMachine(quint16 port)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

[[noreturn]] void fail(quint16 port)
{
    const int error = errno;
    const QString what = error == EADDRINUSE ? QStringLiteral("The bound address is already in use")
                         : error == EACCES   ? QStringLiteral("The address is protected")
                                             : QString::fromLocal8Bit(std::strerror(error));
    throw CommandError(QStringLiteral("TCP port %1: %2").arg(QString::number(port), what));
}

} // namespace

TcpLine::TcpLine(quint16 port, QObject *parent)
    : TcpLine(parent) // from here on the destructor runs, whatever fails below
{
    m_descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    const int yes = 1; // a simulator that is started again gets the port that connections of the last one still name
    const sockaddr_in address = thisMachine(port);
    if (m_descriptor < 0 || ::setsockopt(m_descriptor, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes) != 0 ||
        ::bind(m_descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
        ::listen(m_descriptor, MaxWaiting) != 0)
        fail(port);
    m_calling = std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Read);
    connect(m_calling.get(), &QSocketNotifier::activated, this, &TcpLine::welcome);
}

TcpLine::~TcpLine()
{
    m_calling.reset();
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

QString TcpLine::name() const
{
    sockaddr_in address = {};
    socklen_t size = sizeof address;
    ::getsockname(m_descriptor, reinterpret_cast<sockaddr *>(&address), &size);
    return QStringLiteral("tcp://127.0.0.1:%1").arg(ntohs(address.sin_port));
}

bool TcpLine::write(const QByteArray &bytes)
{
    bool isHeard = false;
    for (TcpClient *client : std::as_const(m_clients))
        isHeard |= client->write(bytes);
    return isHeard;
}

void TcpLine::welcome()
{
    const int descriptor = ::accept4(m_descriptor, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (descriptor >= 0)
        addClient(descriptor);
    else if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM)
        m_calling->setEnabled(false); // who waits would be announced without end; nobody leaves room by itself
}

void TcpLine::addClient(int descriptor)
{
    auto *client = new TcpClient(descriptor, this);
    m_clients.append(client);
    connect(client, &TcpClient::received, this, &TcpLine::received);
    connect(client, &TcpClient::left, this, [this, client] {
        m_clients.removeOne(client);
        client->deleteLater();
    });
}
