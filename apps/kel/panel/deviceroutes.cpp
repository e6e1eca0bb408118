#include "panel/deviceroutes.h"

#include "command.h"

#include <localdevice.h>
#include <piqt.h>
#include <qpiconnection.h>

namespace
{

const QLatin1String SerialPrefix("ser://");

} // namespace

QString transportPath(const LocalDevice &device, const QString &path)
{
    if (!device.twitchGPIO() || !path.startsWith(SerialPrefix))
        return path;
    return QStringLiteral("gser://%1:%2:%3:%4")
        .arg(QString::number(device.twitchPinNumber()), QString::number(int(device.twitchPinReadState())),
             QString::number(int(device.twitchPinSendState())), path.mid(SerialPrefix.size()));
}

DeviceRoutes::DeviceRoutes(QPIConnection &connection, const QString &form, QObject *parent)
    : QObject(parent)
    , m_connection(connection)
    , m_form(form)
{
    connect(&m_connection, &QPIConnection::messageReceived, this, &DeviceRoutes::deliver);
}

DeviceRoutes::~DeviceRoutes()
{
    for (const QString &transport : qAsConst(m_transports))
        m_connection.close(transport);
}

void DeviceRoutes::setPortName(const QString &name, const QString &port)
{
    m_portName = name;
    m_port = port;
}

void DeviceRoutes::open(QWidget &window)
{
    QList<LocalDevice *> devices = window.findChildren<LocalDevice *>();
    if (auto *device = qobject_cast<LocalDevice *>(&window))
        devices.prepend(device);
    for (LocalDevice *device : qAsConst(devices))
        openDevice(*device);
}

void DeviceRoutes::openDevice(LocalDevice &device)
{
    const QString sendPath = device.deviceSendPath();
    if (!sendPath.isEmpty()) {
        const QString transport = openPath(device, sendPath);
        connect(&device, &LocalDevice::sending, this, [this, &device, transport](const PIByteArray &block) {
            m_connection.write(transport, block);
            Q_EMIT sent(device.objectName(), PI2QByteArray(block));
        });
    }
    const QString readPath = device.deviceReadPath();
    if (!readPath.isEmpty())
        m_readers[openPath(device, readPath)].append({&device, readPath});
}

QString DeviceRoutes::openPath(const LocalDevice &device, const QString &path)
{
    const auto fail = [this, &device](const QString &what) {
        throw CommandError(QStringLiteral("%1: %2: %3").arg(m_form, device.objectName(), what.simplified()));
    };
    QString transport = transportPath(device, path);
    if (!m_portName.isEmpty())
        transport.replace(m_portName, m_port);

    const auto known = m_transports.constFind(path);
    if (known != m_transports.constEnd()) {
        if (*known != transport)
            fail(QStringLiteral("%1 has another direction pin or other levels at a device before").arg(path));
        return transport;
    }
    if (!m_connection.open(transport))
        fail(m_connection.errors().isEmpty() ? QStringLiteral("%1 cannot be opened").arg(path)
                                             : m_connection.errors().constLast());
    m_transports.insert(path, transport);
    return transport;
}

void DeviceRoutes::deliver(const QString &transport, const QByteArray &message)
{
    const auto readers = m_readers.constFind(transport);
    if (readers == m_readers.constEnd())
        return;
    Q_EMIT received(transport, message);
    const QVector<Reader> now = *readers; // a device may go away while another is told
    for (const Reader &reader : now) {
        if (reader.device)
            reader.device->dataReceived(message, reader.pathAsNamed);
    }
}
