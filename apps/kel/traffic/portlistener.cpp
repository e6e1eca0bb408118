#include "traffic/portlistener.h"

#include "command.h"
#include "printable.h"

#include <piiodevice.h>
#include <piqt.h>
#include <qpiconnection.h>

namespace
{

/// The plain serial path of \a path: a queued one has three fields about its pin in front, which would be moved.
QString listeningPath(const QString &path)
{
    const QString queued = QStringLiteral("gser://");
    if (path.startsWith(queued))
        return QStringLiteral("ser://") + path.mid(queued.size()).section(QLatin1Char(':'), 3);
    return path.contains(QLatin1String("://")) ? path : QStringLiteral("ser://") + path;
}

} // namespace

PortListener::PortListener(const QString &path, int gapMs, QObject *parent)
    : QObject(parent)
    , m_gap(gapMs)
{
    const PIString full = Q2PIString(listeningPath(path));
    const QString fault = PI2QString(PIIODevice::fullPathError(full));
    if (!fault.isEmpty())
        throw CommandError(QStringLiteral("%1: %2").arg(printable(path), fault.simplified()));
    m_device.reset(PIIODevice::createFromFullPath(full));
    if (!m_device)
        throw CommandError(QStringLiteral("%1: no such kind of port").arg(printable(path)));

    connect(&m_gap, &MessageGap::message, this, &PortListener::message);
    m_device->setProperty("readOnly", true);
    m_device->setReceiver([this](const PIByteArray &bytes) {
        QMetaObject::invokeMethod(this, [this, piece = PI2QByteArray(bytes)] { m_gap.add(piece); });
    });
    if (!m_device->openQuietly())
        throw CommandError(
            QStringLiteral("%1: %2").arg(printable(path), PI2QString(m_device->openError()).simplified()));
}

PortListener::~PortListener()
{
    m_device->setReceiver(nullptr);
    m_device->close();
}
