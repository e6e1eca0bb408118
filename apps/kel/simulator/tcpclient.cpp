#include "simulator/tcpclient.h"

#include <cerrno>

#include <sys/socket.h>
#include <unistd.h>

namespace
{

constexpr int MaxUnsentBytes = 64 * 1024;

bool isOnlyNotReady()
{
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

} // namespace

TcpClient::TcpClient(int descriptor, QObject *parent)
    : QObject(parent)
    , m_descriptor(descriptor)
    , m_readable(descriptor, QSocketNotifier::Read)
    , m_writable(descriptor, QSocketNotifier::Write)
{
    m_writable.setEnabled(false);
    connect(&m_readable, &QSocketNotifier::activated, this, &TcpClient::read);
    connect(&m_writable, &QSocketNotifier::activated, this, &TcpClient::send);
}

TcpClient::~TcpClient()
{
    // The notifiers end after this, and must not watch a number that somebody else has by then.
    m_readable.setEnabled(false);
    m_writable.setEnabled(false);
    ::close(m_descriptor);
}

bool TcpClient::write(const QByteArray &bytes)
{
    if (m_unsent.size() >= MaxUnsentBytes)
        return false;
    const bool isFirst = m_unsent.isEmpty();
    m_unsent += bytes;
    if (isFirst)
        send();
    return true;
}

/// A connection that broke is told by reading, which happens soon; until then what is to be sent waits.
void TcpClient::send()
{
    const ssize_t count = ::send(m_descriptor, m_unsent.constData(), size_t(m_unsent.size()), MSG_NOSIGNAL);
    if (count > 0)
        m_unsent.remove(0, int(count));
    m_writable.setEnabled(!m_unsent.isEmpty() && (count >= 0 || isOnlyNotReady()));
}

void TcpClient::read()
{
    char buffer[16384];
    const ssize_t count = ::recv(m_descriptor, buffer, sizeof buffer, 0);
    if (count > 0)
        Q_EMIT received(QByteArray(buffer, int(count)));
    else if (count == 0 || !isOnlyNotReady())
        leave();
}

void TcpClient::leave()
{
    m_readable.setEnabled(false);
    m_writable.setEnabled(false);
    Q_EMIT left();
}
