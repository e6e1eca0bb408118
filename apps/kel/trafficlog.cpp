#include "trafficlog.h"

#include <QTime>

namespace
{

QString withRemark(const QByteArray &bytes, const QString &remark)
{
    return remark.isEmpty() ? hexText(bytes) : hexText(bytes) + QStringLiteral("  ") + remark;
}

} // namespace

QString hexText(const QByteArray &bytes)
{
    return bytes.isEmpty() ? QStringLiteral("nothing") : QString::fromLatin1(bytes.toHex(' ').toUpper());
}

TrafficLog::TrafficLog(const QString &end, std::FILE *file)
    : m_end(end)
    , m_file(file)
{
}

void TrafficLog::received(const QByteArray &bytes, const QString &remark) const
{
    print("<-", withRemark(bytes, remark));
}

void TrafficLog::sent(const QByteArray &bytes, const QString &remark) const
{
    print("->", withRemark(bytes, remark));
}

void TrafficLog::note(const QString &text) const
{
    print("--", text);
}

void TrafficLog::print(const char *arrow, const QString &text) const
{
    const QString time = QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz"));
    std::fprintf(m_file, "%s  %-6s %s %s\n", qPrintable(time), qPrintable(m_end), arrow, qPrintable(text));
    std::fflush(m_file);
}
