/// \file
/// Brings the devices of a panel to their ports.
#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QVector>
#include <QWidget>

class LocalDevice;
class QPIConnection;

/// Gives every LocalDevice of a window the transport that its paths name: what it sends goes out there,
/// and whole messages that come in reach its dataReceived(). Devices that name the same path share one
/// port. Closes its ports when it is destroyed. GUI thread only.
class DeviceRoutes : public QObject
{
    Q_OBJECT

public:
    /// \a form is the file that errors name.
    DeviceRoutes(QPIConnection &connection, const QString &form, QObject *parent = nullptr);
    ~DeviceRoutes() override;

    /// Takes \a port wherever a path names \a name, for a port whose name is known only when it exists.
    void setPortName(const QString &name, const QString &port);

    /// Opens the ports of all devices in \a window. Throws a CommandError that names the form and the
    /// device when a path cannot be opened. A device without paths gets no transport.
    void open(QWidget &window);

Q_SIGNALS:
    void sent(const QString &device, const QByteArray &bytes);   ///< A block was handed to its port.
    void received(const QString &path, const QByteArray &bytes); ///< A message came in.

private:
    struct Reader {
        QPointer<LocalDevice> device;
        QString pathAsNamed;
    };

    void openDevice(LocalDevice &device);
    QString openPath(const LocalDevice &device, const QString &path);
    void deliver(const QString &transport, const QByteArray &message);

    QPIConnection &m_connection;
    QString m_form;
    QString m_portName;
    QString m_port;
    QHash<QString, QString> m_transports; ///< Of each path that is open, by the path as devices name it.
    QHash<QString, QVector<Reader>> m_readers;
};

/// What to open for \a path of \a device: a plain serial path ("ser://…") of a device that toggles a pin
/// becomes a queued one ("gser://…") with the device's pin and levels; every other path stays.
QString transportPath(const LocalDevice &device, const QString &path);
