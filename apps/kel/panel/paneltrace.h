/// \file
/// The panel's end of its lines, printed.
#pragma once

#include "traffic/trafficlog.h"

class DeviceRoutes;

/// Prints with \a log what goes over \a routes from now on, as long as they live.
void traceRoutes(DeviceRoutes &routes, const TrafficLog &log);
