#include "traffic/logfollower.h"

#include "command.h"
#include "printable.h"

#include <sys/stat.h>
#include <utility>

namespace
{

constexpr int PeriodMs = 100;
constexpr qint64 PieceSize = 64 * 1024;

} // namespace

LogFollower::LogFollower(const QString &path, QObject *parent)
    : QObject(parent)
    , m_path(path)
    , m_file(path)
{
    if (!m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        throw CommandError(QStringLiteral("%1: %2").arg(printable(path), m_file.errorString()));
    m_timer.setInterval(PeriodMs);
    connect(&m_timer, &QTimer::timeout, this, &LogFollower::readOn);
}

void LogFollower::follow()
{
    m_timer.start();
}

bool LogFollower::readOn()
{
    startAgainIfCut();
    for (;;) {
        const QByteArray piece = m_file.read(PieceSize);
        if (m_file.error() != QFileDevice::NoError)
            return fail(m_file.errorString());
        if (piece.isEmpty())
            return true;
        m_begun += piece;
        int begin = 0;
        for (int end = m_begun.indexOf('\n'); end >= 0; end = m_begun.indexOf('\n', begin)) {
            if (!readLine(m_begun.mid(begin, end - begin)))
                return false;
            begin = end + 1;
        }
        m_begun.remove(0, begin);
        if (m_begun.size() > TrafficEntry::MaxLineSize) {
            ++m_line;
            return fail(QStringLiteral("longer than %1 KiB").arg(TrafficEntry::MaxLineSize / 1024));
        }
    }
}

bool LogFollower::readRest()
{
    return m_begun.isEmpty() || readLine(std::exchange(m_begun, QByteArray()));
}

void LogFollower::startAgainIfCut()
{
    struct stat ours = {};
    struct stat named = {};
    const bool isReplaced = ::fstat(m_file.handle(), &ours) == 0 &&
                            ::stat(QFile::encodeName(m_path).constData(), &named) == 0 &&
                            (ours.st_ino != named.st_ino || ours.st_dev != named.st_dev);
    if (!isReplaced && m_file.size() >= m_file.pos())
        return;
    if (isReplaced) {
        m_file.close();
        m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    m_file.seek(0);
    m_begun.clear();
    m_line = 0;
}

bool LogFollower::readLine(const QByteArray &line)
{
    ++m_line;
    TrafficEntry read;
    QString error;
    if (line.size() > TrafficEntry::MaxLineSize)
        return fail(QStringLiteral("longer than %1 KiB").arg(TrafficEntry::MaxLineSize / 1024));
    if (!read.readLine(QString::fromUtf8(line.constData(), line.size()), &error))
        return fail(error);
    read.line = m_line;
    if (!read.end.isEmpty())
        Q_EMIT entry(read);
    return true;
}

bool LogFollower::fail(const QString &what)
{
    m_timer.stop();
    Q_EMIT failed(QStringLiteral("%1:%2: %3").arg(printable(m_path), QString::number(m_line), what));
    return false;
}
