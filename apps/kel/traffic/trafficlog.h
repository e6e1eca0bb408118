/// \file
/// What goes over a line, as people read it and `kel sim --replay` plays it back.
#pragma once

#include "traffic/trafficentry.h"

#include <QByteArray>
#include <QString>

#include <cstdio>
#include <memory>

/// Prints one line for each message: the time, whose end of the line it is, the direction and the bytes
/// (docs/formats/traffic-log.md). Copies write to the same place.
class TrafficLog
{
public:
    /// Prints to \a file, flushed line by line, with \a end ("panel", "device", "line") in front.
    explicit TrafficLog(const QString &end, std::FILE *file = stdout);

    /// Writes to the file \a path, behind what another log has there already. Throws a CommandError that
    /// names it when it cannot be opened or holds something else.
    static TrafficLog toFile(const QString &end, const QString &path);

    void received(const QByteArray &bytes, const QString &remark = QString()) const; ///< "<- A1 01  remark"
    void sent(const QByteArray &bytes, const QString &remark = QString()) const;     ///< "-> A1 01  remark"
    void note(const QString &text) const;                                            ///< A line without bytes.
    void write(const TrafficEntry &entry) const; ///< A line with a time and an end of its own.

    bool hasLostLines() const; ///< Whether some line could not be written.

private:
    struct File;

    void print(TrafficEntry::Direction direction, const QByteArray &bytes, const QString &remark) const;

    QString m_end;
    std::shared_ptr<File> m_file;
};
