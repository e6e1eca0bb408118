/// \file
/// The line that a simulated device hangs on.
#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

/// A line with a far end that may come and go. Lives on one thread with an event loop.
class SimulatorLine : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    virtual QString name() const = 0; ///< What a panel has to open, for instance "/dev/pts/3".

    /// Sends all of \a bytes or nothing. False when nobody listens or the far end takes no more: a
    /// device does not wait for its reader either.
    virtual bool write(const QByteArray &bytes) = 0;

Q_SIGNALS:
    void received(const QByteArray &bytes); ///< Bytes as they came, in pieces of any size.
};
