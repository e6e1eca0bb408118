/// \file
/// Days of a panel in minutes.
#pragma once

/// A panel with every widget lives for \a days of ticks of 50 ms by a fake clock: lamps fade, a device answers each
/// ten seconds, the plot grows, buttons blink, everything is painted now and then. True when memory, descriptors and
/// counts are as they should be; says so on standard output.
bool soakDays(double days);
