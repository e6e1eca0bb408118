#include "usage.h"

#include "memorypeak.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <cstdio>
#include <unistd.h>

namespace
{

constexpr qint64 AllocatedMargin = 256 * 1024; ///< A tick that leaves one byte behind takes 50 million of them.
constexpr qint64 ResidentMargin = 4 * 1024 * 1024;

bool stays(const char *what, qint64 before, qint64 after, qint64 margin)
{
    const bool isSteady = after <= before + margin;
    std::printf("%s: %lld after the first third, at most %lld later: %s\n", what, static_cast<long long>(before),
                static_cast<long long>(after), isSteady ? "steady" : "GROWS");
    return isSteady;
}

} // namespace

Usage Usage::now()
{
    Usage usage;
    usage.allocated = MemoryPeak::inUse();
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (statm.open(QIODevice::ReadOnly))
        usage.resident = statm.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
    statm.close();
    usage.descriptors = int(
        QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size());
    return usage;
}

void UsageLog::add(const char *when, double value)
{
    const Usage usage = Usage::now();
    m_samples << usage;
    std::printf("%s %8.3f: %lld bytes allocated, %lld KiB resident, %d descriptors\n", when, value,
                static_cast<long long>(usage.allocated), static_cast<long long>(usage.resident / 1024),
                usage.descriptors);
    std::fflush(stdout);
}

bool UsageLog::isSteady() const
{
    const int warm = m_expected / 3;
    if (m_samples.size() <= warm + 1) {
        std::printf("too few samples\n");
        return false;
    }
    Usage before;
    Usage after;
    for (int i = 0; i < m_samples.size(); ++i) {
        Usage &most = i <= warm ? before : after;
        most.allocated = std::max(most.allocated, m_samples.at(i).allocated);
        most.resident = std::max(most.resident, m_samples.at(i).resident);
        most.descriptors = std::max(most.descriptors, m_samples.at(i).descriptors);
    }
    const bool hasDescriptors = stays("descriptors", before.descriptors, after.descriptors, 0);
    // A sanitizer keeps what was freed for a while: its memory says nothing about ours.
    if (!MemoryPeak::isAvailable())
        return hasDescriptors;
    const bool isSteady = stays("bytes allocated", before.allocated, after.allocated, AllocatedMargin);
    return stays("bytes resident", before.resident, after.resident, ResidentMargin) && isSteady && hasDescriptors;
}
