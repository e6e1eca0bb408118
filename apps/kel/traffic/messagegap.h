/// \file
/// Puts messages together from pieces.
#pragma once

#include <QByteArray>
#include <QObject>
#include <QTimer>

/// Collects bytes until none came for a while, and gives them out as one message. A device on a serial
/// line tells messages apart the same way.
class MessageGap : public QObject
{
    Q_OBJECT

public:
    /// A message ends \a gapMs after its last byte.
    explicit MessageGap(int gapMs, QObject *parent = nullptr);

    /// A message that grows past this many bytes is given out as it stands, so that a line that never
    /// rests takes no memory without end.
    static constexpr int MaxMessageSize = 64 * 1024;

public Q_SLOTS:
    void add(const QByteArray &bytes);

Q_SIGNALS:
    void message(const QByteArray &bytes);

private:
    void finish();

    QTimer m_silence;
    QByteArray m_bytes;
};
