/// \file
/// What a process holds, and whether it grows.
#pragma once

#include <QVector>
#include <QtGlobal>

/// What the process holds at one moment.
struct Usage {
    qint64 allocated = 0; ///< Bytes of the heap in use; 0 under a sanitizer.
    qint64 resident = 0;  ///< Bytes in memory.
    int descriptors = 0;

    static Usage now();
};

/// Samples over a long run, printed as they come. The first third is for warming up.
class UsageLog
{
public:
    /// \a samples are expected in all.
    explicit UsageLog(int samples)
        : m_expected(samples)
    {
    }

    void add(const char *when, double value); ///< Takes a sample at the time \a value of the unit \a when.

    /// Whether nothing grew after the first third; prints what did.
    bool isSteady() const;

private:
    int m_expected;
    QVector<Usage> m_samples;
};
