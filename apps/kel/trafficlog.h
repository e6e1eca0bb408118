/// \file
/// What goes over a line, as people read it.
#pragma once

#include <QByteArray>
#include <QString>

#include <cstdio>

/// Prints one line for each message: the time, whose end of the line it is, the direction and the bytes.
class TrafficLog
{
public:
    /// Prints to \a file, flushed line by line, with \a end ("panel", "device") in front.
    explicit TrafficLog(const QString &end, std::FILE *file = stdout);

    void received(const QByteArray &bytes, const QString &remark = QString()) const; ///< "<- A1 01  remark"
    void sent(const QByteArray &bytes, const QString &remark = QString()) const;     ///< "-> A1 01  remark"
    void note(const QString &text) const;                                            ///< A line without bytes.

private:
    void print(const char *arrow, const QString &text) const;

    QString m_end;
    std::FILE *m_file;
};

/// \a bytes in capital hexadecimal with a space between, "nothing" for none.
QString hexText(const QByteArray &bytes);
