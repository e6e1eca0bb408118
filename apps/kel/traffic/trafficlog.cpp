#include "traffic/trafficlog.h"

#include "command.h"
#include "printable.h"

#include <QDate>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>

namespace
{

/// How a log file begins, by which it is known again.
const char *const Header = "# kel traffic log";

/// Throws when \a path is there and is no log.
void checkLogFile(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return;
    QFile file(path);
    if (!info.isFile())
        throw CommandError(QStringLiteral("%1: not a file").arg(printable(path)));
    if (info.size() == 0)
        return;
    if (!file.open(QIODevice::ReadOnly))
        throw CommandError(QStringLiteral("%1: %2").arg(printable(path), file.errorString()));
    if (!file.read(qint64(std::strlen(Header))).startsWith(Header))
        throw CommandError(QStringLiteral("%1: is there already and is no traffic log").arg(printable(path)));
}

} // namespace

struct TrafficLog::File {
    std::FILE *stream = nullptr;
    QString path; ///< Of a file that is ours to close.
    bool isBroken = false;
    bool hasLostLines = false;

    File(std::FILE *file, const QString &name)
        : stream(file)
        , path(name)
    {
    }
    ~File()
    {
        if (!path.isEmpty())
            std::fclose(stream);
    }
    File(const File &) = delete;
    File &operator=(const File &) = delete;

    void write(const QByteArray &line)
    {
        const auto size = std::size_t(line.size());
        const bool isWritten = std::fwrite(line.constData(), 1, size, stream) == size && std::fflush(stream) == 0;
        // Once is enough: a panel runs on without its log.
        if (!isWritten && !isBroken && !path.isEmpty())
            std::fprintf(stderr, "kel: %s: %s\n", qPrintable(printable(path)), std::strerror(errno));
        isBroken = !isWritten;
        hasLostLines = hasLostLines || isBroken;
    }
};

TrafficLog::TrafficLog(const QString &end, std::FILE *file)
    : m_end(end)
    , m_file(std::make_shared<File>(file, QString()))
{
}

TrafficLog TrafficLog::toFile(const QString &end, const QString &path)
{
    checkLogFile(path);
    std::FILE *stream = std::fopen(QFile::encodeName(path).constData(), "ae"); // "e": not for programs we start
    if (!stream)
        throw CommandError(QStringLiteral("%1: %2").arg(printable(path), QString::fromLocal8Bit(std::strerror(errno))));
    TrafficLog log(end);
    log.m_file = std::make_shared<File>(stream, path);
    log.m_file->write(Header + (", " + QDate::currentDate().toString(Qt::ISODate).toUtf8()) + '\n');
    return log;
}

void TrafficLog::received(const QByteArray &bytes, const QString &remark) const
{
    print(TrafficEntry::Direction::Received, bytes, remark);
}

void TrafficLog::sent(const QByteArray &bytes, const QString &remark) const
{
    print(TrafficEntry::Direction::Sent, bytes, remark);
}

void TrafficLog::note(const QString &text) const
{
    print(TrafficEntry::Direction::Note, {}, text);
}

void TrafficLog::write(const TrafficEntry &entry) const
{
    m_file->write(entry.text().toUtf8() + '\n');
}

bool TrafficLog::hasLostLines() const
{
    return m_file->hasLostLines;
}

void TrafficLog::print(TrafficEntry::Direction direction, const QByteArray &bytes, const QString &remark) const
{
    TrafficEntry entry;
    entry.time = QTime::currentTime();
    entry.end = m_end;
    entry.direction = direction;
    entry.bytes = bytes;
    entry.remark = remark;
    write(entry);
}
