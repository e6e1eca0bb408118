/// \file
/// One line of a traffic log (docs/formats/traffic-log.md).
#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QString>
#include <QTime>
#include <QVector>

/// What went over a line at one moment, or a note about it.
struct TrafficEntry {
    enum class Direction {
        Received, ///< "<-": by the end that the log was kept at.
        Sent,     ///< "->": by that end.
        Unknown,  ///< "<>": heard on the line.
        Note      ///< "--": text only.
    };

    QTime time;
    QString end; ///< "panel", "device", or "line" for who only listens.
    Direction direction = Direction::Note;
    QByteArray bytes; ///< Of everything but notes.
    QString remark;   ///< Behind the bytes; the whole text of a note.
    int line = 0;     ///< Where it stands in its file, from 1; 0 when it comes from none.

    /// Whether it is what a device is asked, seen from whichever end.
    bool isRequest() const;

    /// The entry as a line, without its end. Line breaks and control characters do not get through.
    QString text() const;

    /// Reads a \a line without its end. False, with half a sentence in \a error, when it is none. A line that
    /// is empty or begins with "#" is a note without text. Any text is safe to give.
    bool readLine(const QString &line, QString *error);

    /// A message of the largest size that is put together, and the rest of its line.
    static constexpr int MaxLineSize = 256 * 1024;
};

Q_DECLARE_METATYPE(TrafficEntry)

/// A whole log, or the one line that says why it is none.
struct TrafficRecord {
    QVector<TrafficEntry> entries; ///< Without comments and empty lines.
    QString error;                 ///< "FILE:LINE: what is wrong", empty when the log is good.

    static constexpr int MaxSize = 64 * 1024 * 1024; ///< Bytes of a file that is read as a whole.

    /// Reads \a text; \a fileName appears in the error only. Any bytes are safe to give.
    static TrafficRecord fromText(const QByteArray &text, const QString &fileName);
};

/// \a bytes in capital hexadecimal with a space between, "nothing" for none.
QString hexText(const QByteArray &bytes);
