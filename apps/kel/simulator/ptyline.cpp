#include "simulator/ptyline.h"

#include "command.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

namespace
{

constexpr int WatchPeriodMs = 20;

[[noreturn]] void fail(const QString &what)
{
    throw CommandError(QStringLiteral("%1: %2").arg(what, QString::fromLocal8Bit(std::strerror(errno))));
}

/// A raw line from the start, so that nothing is echoed or translated before the panel has set it up.
/// Opening and closing the port once also tells the kernel that nobody has it open.
void makeRaw(const QByteArray &port)
{
    const int descriptor = ::open(port.constData(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0)
        fail(QString::fromLocal8Bit(port));
    termios settings;
    ::tcgetattr(descriptor, &settings);
    ::cfmakeraw(&settings);
    ::tcsetattr(descriptor, TCSANOW, &settings);
    ::close(descriptor);
}

} // namespace

PtyLine::PtyLine(const QString &link, QObject *parent)
    : PtyLine(parent) // from here on the destructor runs, whatever fails below
{
    m_descriptor = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    char port[128];
    if (m_descriptor < 0 || ::grantpt(m_descriptor) != 0 || ::unlockpt(m_descriptor) != 0 ||
        ::ptsname_r(m_descriptor, port, sizeof port) != 0)
        fail(QStringLiteral("no pseudo terminal"));
    m_port = QString::fromLocal8Bit(port);
    makeRaw(port);
    if (!link.isEmpty())
        makeLink(link);

    m_readable = std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Read);
    m_readable->setEnabled(false);
    connect(m_readable.get(), &QSocketNotifier::activated, this, &PtyLine::readAll);
    connect(&m_watch, &QTimer::timeout, this, &PtyLine::watchForReader);
    m_watch.start(WatchPeriodMs);
}

PtyLine::~PtyLine()
{
    if (!m_link.isEmpty() && QFile::symLinkTarget(m_link) == m_port)
        QFile::remove(m_link);
    m_readable.reset();
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

void PtyLine::makeLink(const QString &link)
{
    const QFileInfo info(link);
    if (info.isSymLink() && !info.exists())
        QFile::remove(link); // what a simulator that was killed left behind
    else if (info.isSymLink())
        throw CommandError(QStringLiteral("%1: leads to %2 already").arg(link, info.symLinkTarget()));
    if (::symlink(QFile::encodeName(m_port).constData(), QFile::encodeName(link).constData()) != 0)
        fail(link);
    m_link = link;
}

bool PtyLine::write(const QByteArray &bytes)
{
    if (!isListenedTo())
        return false;
    // A pseudo terminal takes a few kilobytes at a time; a part that does not fit is lost with the rest
    // of its message, as on a line whose reader is too slow.
    return ::write(m_descriptor, bytes.constData(), size_t(bytes.size())) == bytes.size();
}

bool PtyLine::isListenedTo() const
{
    pollfd state = {m_descriptor, POLLOUT, 0};
    return ::poll(&state, 1, 0) >= 0 && (state.revents & POLLHUP) == 0;
}

void PtyLine::watchForReader()
{
    if (!isListenedTo())
        return;
    m_watch.stop();
    m_readable->setEnabled(true);
}

void PtyLine::readAll()
{
    char buffer[4096];
    const ssize_t count = ::read(m_descriptor, buffer, sizeof buffer);
    if (count > 0) {
        Q_EMIT received(QByteArray(buffer, int(count)));
        return;
    }
    if (count < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    // Nobody has the port open any more; the descriptor would report that without end.
    m_readable->setEnabled(false);
    m_watch.start(WatchPeriodMs);
}
