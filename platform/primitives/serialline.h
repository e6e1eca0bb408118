/// \file
/// The kernel's side of a serial port.
#pragma once

#include <string>

/// How bytes look on the wire.
struct LineSettings {
    int inSpeed = 0;  ///< Bits per second, above 0.
    int outSpeed = 0; ///< Likewise.
    int dataBits = 8; ///< 5 to 8; anything else is taken as 8.
    bool hasParity = false;
    bool isParityOdd = false;
    bool hasTwoStopBits = false;
};

/// Opens the port of \a path for this program alone, to read only if \a isReadOnly; the descriptor does not
/// block. -1, with one line in \a error, when it cannot be opened, is no serial port, or is used by another
/// program.
int openSerialLine(const std::string &path, bool isReadOnly, std::string &error);

/// Sets up raw transmission. Empty when the port took everything, else one line that says what not.
std::string applyLineSettings(int descriptor, const LineSettings &settings);

/// Lets other programs open the port again and drops what it still holds. Call it before the close.
void releaseSerialLine(int descriptor);
