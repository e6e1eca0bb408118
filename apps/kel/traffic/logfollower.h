/// \file
/// A traffic log that may still grow.
#pragma once

#include "traffic/trafficentry.h"

#include <QFile>
#include <QObject>
#include <QTimer>

/// Reads the lines of a log, those that are there and those that come. A log that was cut or replaced is read
/// from its start again. One thread with an event loop.
class LogFollower : public QObject
{
    Q_OBJECT

public:
    /// Throws a CommandError that names \a path when it cannot be read.
    explicit LogFollower(const QString &path, QObject *parent = nullptr);

    /// Reads what is there. False when a line is none; failed() was emitted then.
    bool readOn();

    /// Takes what is there behind the last line break for a line, as it is one in a log that grows no more. False as
    /// for readOn().
    bool readRest();

    void follow(); ///< Keeps reading on until the object goes away or failed() is emitted.

Q_SIGNALS:
    void entry(const TrafficEntry &entry);
    void failed(const QString &error); ///< "FILE:LINE: what is wrong"; nothing is read after it.

private:
    void startAgainIfCut();
    bool readLine(const QByteArray &line);
    bool fail(const QString &what);

    QString m_path;
    QFile m_file;
    QByteArray m_begun; ///< A line whose end has not been written yet.
    int m_line = 0;
    QTimer m_timer;
};
