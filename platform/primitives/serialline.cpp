// The kernel's own termios2 takes any speed; its header and the C library's <termios.h> exclude each other.
#include "serialline.h"

#include <asm/termbits.h>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace
{

constexpr int DefaultDataBits = 8;

struct SpeedCode {
    int speed;
    tcflag_t code;
};

/// Speeds with a code of their own, which every program that asks for the settings understands.
constexpr SpeedCode SpeedCodes[] = {
    {50, B50},           {75, B75},           {110, B110},         {134, B134},         {150, B150},
    {200, B200},         {300, B300},         {600, B600},         {1200, B1200},       {1800, B1800},
    {2400, B2400},       {4800, B4800},       {9600, B9600},       {19200, B19200},     {38400, B38400},
    {57600, B57600},     {115200, B115200},   {230400, B230400},   {460800, B460800},   {500000, B500000},
    {576000, B576000},   {921600, B921600},   {1000000, B1000000}, {1152000, B1152000}, {1500000, B1500000},
    {2000000, B2000000}, {2500000, B2500000}, {3000000, B3000000}, {3500000, B3500000}, {4000000, B4000000},
};

tcflag_t speedCode(int speed)
{
    for (const SpeedCode &known : SpeedCodes) {
        if (known.speed == speed)
            return known.code;
    }
    return BOTHER;
}

tcflag_t dataBitsCode(int dataBits)
{
    switch (dataBits) {
    case 5:
        return CS5;
    case 6:
        return CS6;
    case 7:
        return CS7;
    default:
        return CS8;
    }
}

tcflag_t controlFlags(const LineSettings &settings)
{
    tcflag_t flags = CREAD | CLOCAL | dataBitsCode(settings.dataBits) | speedCode(settings.outSpeed);
    if (settings.inSpeed != settings.outSpeed)
        flags |= speedCode(settings.inSpeed) << IBSHIFT;
    if (settings.hasParity)
        flags |= PARENB;
    if (settings.hasParity && settings.isParityOdd)
        flags |= PARODD;
    if (settings.hasTwoStopBits)
        flags |= CSTOPB;
    return flags;
}

/// A driver may leave out what it cannot do without failing, so the settings are read back.
std::string refusedSettings(int descriptor, tcflag_t wanted)
{
    termios2 taken{};
    if (::ioctl(descriptor, TCGETS2, &taken) != 0)
        return std::strerror(errno);
    const tcflag_t refused = taken.c_cflag ^ wanted;
    std::string text;
    if (refused & (PARENB | PARODD))
        text += ", parity";
    if (refused & CSIZE)
        text += ", data bits";
    if (refused & CSTOPB)
        text += ", stop bits";
    return text.empty() ? text : "the port does not take its " + text.substr(2);
}

/// The lock tells programs that ask for it; the exclusive mode stops the others, except those of the
/// administrator, whom it does not bind.
bool claim(int descriptor)
{
    return ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 && ::ioctl(descriptor, TIOCEXCL) == 0;
}

std::string openErrorText(int error)
{
    return error == EBUSY || error == EWOULDBLOCK ? "it is used by another program" : std::strerror(error);
}

/// A signal may end the opening; that says nothing about the port.
int openPatiently(const std::string &path, int access)
{
    int descriptor = -1;
    do {
        descriptor = ::open(path.c_str(), access | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

} // namespace

int openSerialLine(const std::string &path, bool isReadOnly, std::string &error)
{
    const int descriptor = openPatiently(path, isReadOnly ? O_RDONLY : O_RDWR);
    if (descriptor < 0) {
        error = openErrorText(errno);
        return -1;
    }
    termios2 settings{};
    const bool isSerial = ::ioctl(descriptor, TCGETS2, &settings) == 0;
    if (isSerial && claim(descriptor))
        return descriptor;
    error = isSerial ? openErrorText(errno) : "it is no serial port";
    ::close(descriptor);
    return -1;
}

std::string applyLineSettings(int descriptor, const LineSettings &settings)
{
    termios2 wanted{};
    wanted.c_iflag = settings.hasParity ? INPCK : 0;
    wanted.c_cflag = controlFlags(settings);
    wanted.c_ispeed = static_cast<speed_t>(settings.inSpeed);
    wanted.c_ospeed = static_cast<speed_t>(settings.outSpeed);
    wanted.c_cc[VMIN] = 1;
    if (::ioctl(descriptor, TCSETS2, &wanted) != 0)
        return std::string("the port does not take its settings: ") + std::strerror(errno);
    const std::string refused = refusedSettings(descriptor, wanted.c_cflag);
    if (refused.empty() && (settings.dataBits < 5 || settings.dataBits > DefaultDataBits))
        return "a port has 5 to 8 data bits; it is used with 8";
    return refused;
}

void releaseSerialLine(int descriptor)
{
    // Closing waits for what is left. A pseudo terminal never has any, and its flush would take
    // away what the other side has not read yet.
    int unsent = 0;
    if (::ioctl(descriptor, TIOCOUTQ, &unsent) == 0 && unsent > 0)
        ::ioctl(descriptor, TCFLSH, TCOFLUSH);
    ::ioctl(descriptor, TIOCNXCL);
}
