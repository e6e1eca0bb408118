/// \file
/// A panel's serial line for as long as one likes.
#pragma once

/// A device sends a command five times a second over a queued port on a pseudo terminal, whose far end sends it back,
/// for \a minutes of real time. True when every message came back in order, no tick drifted, and memory and
/// descriptors stayed; says so on standard output.
bool soakLine(double minutes);
