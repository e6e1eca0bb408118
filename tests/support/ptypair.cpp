#include "ptypair.h"

#include <QElapsedTimer>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

namespace
{

/// A hung-up end is ready at once, for nothing; then a short pause keeps the wait from spinning.
constexpr useconds_t HungUpPauseUs = 1000;

void waitFor(int descriptor, short events, qint64 timeoutMs)
{
    pollfd ready{descriptor, events, 0};
    ::poll(&ready, 1, static_cast<int>(qMax<qint64>(timeoutMs, 0)));
    if (ready.revents & (POLLHUP | POLLERR))
        ::usleep(HungUpPauseUs);
}

/// The line neither echoes nor changes a byte, also before the near end has been opened.
void makeRaw(int master)
{
    termios settings{};
    ::tcgetattr(master, &settings);
    ::cfmakeraw(&settings);
    ::tcsetattr(master, TCSANOW, &settings);
}

} // namespace

PtyPair::PtyPair()
{
    comeBack();
}

PtyPair::~PtyPair()
{
    vanish();
}

QString PtyPair::path() const
{
    return m_dir.filePath(QStringLiteral("tty"));
}

void PtyPair::vanish()
{
    QFile::remove(path());
    if (m_master >= 0)
        ::close(m_master);
    m_master = -1;
}

void PtyPair::comeBack()
{
    vanish();
    m_master = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    char slave[64] = "";
    if (m_master < 0 || ::grantpt(m_master) != 0 || ::unlockpt(m_master) != 0 ||
        ::ptsname_r(m_master, slave, sizeof slave) != 0)
        qFatal("no pseudo terminal");
    makeRaw(m_master);
    if (::symlink(slave, QFile::encodeName(path()).constData()) != 0)
        qFatal("no link to the pseudo terminal");
}

QByteArray PtyPair::read(int count, int timeoutMs)
{
    QByteArray bytes;
    QElapsedTimer timer;
    timer.start();
    while (bytes.size() < count) {
        QByteArray piece(count - bytes.size(), '\0');
        const ssize_t got = ::read(m_master, piece.data(), static_cast<size_t>(piece.size()));
        if (got > 0)
            bytes += piece.left(static_cast<int>(got));
        else if (timer.elapsed() >= timeoutMs)
            break;
        else
            waitFor(m_master, POLLIN, timeoutMs - timer.elapsed());
    }
    return bytes;
}

QByteArray PtyPair::readAll(int quietMs)
{
    QByteArray bytes;
    for (QByteArray piece = read(1, quietMs); !piece.isEmpty(); piece = read(1, quietMs))
        bytes += piece;
    return bytes;
}

bool PtyPair::write(const QByteArray &bytes, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    int sent = 0;
    while (sent < bytes.size()) {
        const ssize_t taken = ::write(m_master, bytes.constData() + sent, static_cast<size_t>(bytes.size() - sent));
        if (taken > 0)
            sent += static_cast<int>(taken);
        else if (timer.elapsed() >= timeoutMs || errno != EAGAIN)
            return false;
        else
            waitFor(m_master, POLLOUT, timeoutMs - timer.elapsed());
    }
    return true;
}
