/// \file
/// Serial ports.
#pragma once

#include <piiodevice.h>

#include <atomic>
#include <initializer_list>
#include <memory>
#include <vector>

/// A serial port: full paths "ser://PATH:SPEED:DATABITS:PARITY:STOPBITS", for example
/// "ser:///dev/ttyS0:115200:8:N:1".
///
/// Properties: "path", "inSpeed" and "outSpeed" (bits per second, 115200 at first), "dataBitsCount"
/// (5 to 8, 8 at first) and "parameters" (flags, 0 at first). They take effect when the port opens,
/// and by applySettings(). "readOnly" (false at first) takes effect when the port opens: nothing can be
/// written to it then.
///
/// The port is opened for this program alone: a second one, here or in another program, fails to
/// open and says so. A port that disappears is reported once on standard error and opened again when
/// it returns.
class KEL_PRIMITIVES_EXPORT PISerial : public PIIODevice
{
public:
    /// Flags of the property "parameters".
    enum Parameter { ParityControl = 1, ParityOdd = 2, TwoStopBits = 4 };

    PISerial();
    ~PISerial() override;

    PIString className() const override { return "PISerial"; }
    PIString parentClassName() const override { return "PIIODevice"; }

    /// Sets the speed of both directions, in bits per second, also of an open port. Not above 0 is
    /// refused with a console line and changes nothing.
    bool setSpeed(int bitsPerSecond);

    /// Gives an open port the properties as they are now. False, with a console line, when it does not
    /// take them all; true for a closed port.
    bool applySettings();

    PIString fullPathPrefix() const override { return "ser"; }
    PIIODevice *copy() const override { return new PISerial; }
    bool openDevice() override;

    /// Lets what is being sent go out as long as the line takes it, then closes: at most 200 ms later
    /// than that takes on the wire. Not to be waited for inside a receiver.
    bool closeDevice() override;

    /// Returns \a size when the port took the whole block. Waits while it takes none; -1 when it went
    /// away, is closed, or stood still for ten seconds and the wire time of a driver's buffer.
    int writeDevice(const void *data, int size) override;

    /// Empty, with a console line, for a path with ":", which the text has no room for.
    PIString constructFullPathDevice() const override;
    void configureFromFullPathDevice(const PIString &text) override;
    PIString fullPathDeviceError(const PIString &text) const override;

protected:
    /// The settings as text, from the path to the stop bits.
    PIString constructLineText() const { return PISerial::constructFullPathDevice(); }
    /// Takes path, speed, data bits, parity and stop bits from \a fields, the path being number
    /// \a first. Missing and empty fields leave their settings; further ones are ignored.
    void configureLine(const std::vector<PIString> &fields, size_t first);

    /// What is wrong with the numbers of such fields, one line; empty when nothing is.
    static PIString lineError(const std::vector<PIString> &fields, size_t first);
    /// Names the first of the fields \a numbers that is neither empty nor a whole number.
    static PIString numberError(const std::vector<PIString> &fields, std::initializer_list<size_t> numbers);

    /// What became of a block that was written.
    enum class Fate {
        Taken,       ///< The port has all of it; not all need be on the wire.
        Stuck,       ///< The line stood still for too long, a part may have gone out; or it is open to read only.
        Interrupted, ///< The port is or went away, or closes and took nothing: it can be sent again.
    };

    struct Written {
        Fate fate = Fate::Interrupted;
        unsigned long long connection = 0; ///< For isSamePort().
    };

    /// As writeDevice(), and tells what became of the block.
    Written writeBlock(const void *data, int size);

    bool isPortAway() const; ///< Open, but the port went away and is waited for.
    /// Whether the port has been there all the time since it took a block over \a connection.
    bool isSamePort(unsigned long long connection) const;
    int unsentBytes() const;                              ///< What the port took and has not sent yet.
    int unsentAtClose() const { return m_unsentAtClose; } ///< What closeDevice() dropped of it; very large if unknown.
    void hurryWrites(); ///< From now until it closes, a write that the line takes nothing of ends soon.

private:
    class Port;

    bool hasParameter(Parameter parameter) const;
    void setParameter(Parameter parameter, bool isOn);

    std::unique_ptr<Port> m_port;
    std::atomic<int> m_unsentAtClose{0};
};
