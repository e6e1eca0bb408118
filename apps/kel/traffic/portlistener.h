/// \file
/// A port that is only listened to.
#pragma once

#include "traffic/messagegap.h"

#include <QObject>
#include <QString>

#include <memory>

class PIIODevice;

/// Opens a port for reading only and gives out whole messages. One thread with an event loop.
class PortListener : public QObject
{
    Q_OBJECT

public:
    /// \a path is a full path ("ser://…", "gser://…", "tcp://HOST:PORT") or the file of a serial port, then
    /// at 115200 bits per second. No pin is moved. A message ends after a silence of \a gapMs. Throws a
    /// CommandError that names the path when it cannot be opened.
    PortListener(const QString &path, int gapMs, QObject *parent = nullptr);
    ~PortListener() override;

Q_SIGNALS:
    void message(const QByteArray &bytes);

private:
    std::unique_ptr<PIIODevice> m_device;
    MessageGap m_gap;
};
