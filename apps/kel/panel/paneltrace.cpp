#include "panel/paneltrace.h"

#include "panel/deviceroutes.h"

void traceRoutes(DeviceRoutes &routes, const TrafficLog &log)
{
    QObject::connect(&routes, &DeviceRoutes::sent, &routes,
                     [log](const QString &device, const QByteArray &bytes) { log.sent(bytes, device); });
    QObject::connect(&routes, &DeviceRoutes::received, &routes,
                     [log](const QString &, const QByteArray &bytes) { log.received(bytes); });
}
