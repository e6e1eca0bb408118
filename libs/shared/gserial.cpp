#include "gserial.h"

#include "blocksonwire.h"

#include <picout.h>
#include <pigpio.h>
#include <pisleep.h>
#include <piurgent.h>

#include <utility>

namespace
{

constexpr int WritePeriodMs = 50;
constexpr long long BitsPerByte = 10;
constexpr long long MicrosecondsPerSecond = 1000000;

enum Field : size_t { PinField, ReadLevelField, SendLevelField, LineFields };

/// Holds a pin at one level and leaves it at another, whichever way the block is left.
class HeldPin
{
public:
    HeldPin(int pin, int heldLevel, int leftLevel)
        : m_pin(pin)
        , m_leftLevel(leftLevel)
    {
        set(heldLevel);
    }
    ~HeldPin() { set(m_leftLevel); }

    HeldPin(const HeldPin &) = delete;
    HeldPin &operator=(const HeldPin &) = delete;

private:
    void set(int level) const
    {
        if (m_pin > 0)
            PIGPIO::pinSet(m_pin, level != 0);
    }

    int m_pin;
    int m_leftLevel;
};

void readNumber(const std::vector<PIString> &fields, size_t index, std::atomic<int> &number)
{
    if (index < fields.size() && !fields[index].trimmed().isEmpty())
        number = fields[index].toInt();
}

} // namespace

PIGSerial::PIGSerial()
    : m_onWire(std::make_unique<BlocksOnWire>())
{
    addHandler("tickWrite", [this] { tickWrite(); });
    piConnectU(&m_writeTimer, "tickEvent", this, "tickWrite", "libs/shared/gserial:15");
}

PIGSerial::~PIGSerial()
{
    close();
    disconnectAll();
    PIByteArray block;
    while (takeOldest(block))
        reportLost(block, "is no longer used:");
}

bool PIGSerial::openDevice()
{
    if (!m_writeTimer.isRunning())
        m_writeTimer.start(WritePeriodMs);
    return PISerial::openDevice();
}

bool PIGSerial::closeDevice()
{
    hurryWrites();
    if (m_writeTimer.isRunning())
        m_writeTimer.stop();
    // Frees the queue in any case; a writer on another thread keeps its lock.
    m_queueMutex.unlock();

    const std::lock_guard<std::recursive_mutex> lock(m_sendMutex);
    settleWire();
    const bool isClosed = PISerial::closeDevice();
    m_onWire->keepLast(unsentAtClose());
    reportOnWire("was closed while sending:");
    return isClosed;
}

int PIGSerial::writeDevice(const void *data, int size)
{
    PIByteArray block(data, size);
    const std::lock_guard<PIMutex> lock(m_queueMutex);
    m_queue.enqueue(std::move(block));
    m_writeTimer.wake();
    return size;
}

bool PIGSerial::takeOldest(PIByteArray &block)
{
    const std::lock_guard<PIMutex> lock(m_queueMutex);
    if (m_unsent) {
        block = std::move(*m_unsent);
        m_unsent.reset();
        return true;
    }
    if (m_queue.isEmpty()) {
        // Under the lock, so that a block that comes now wakes the timer.
        if (m_onWire->isEmpty())
            m_writeTimer.rest();
        return false;
    }
    block = m_queue.dequeue();
    return true;
}

void PIGSerial::keepUnsent(PIByteArray block)
{
    const std::lock_guard<PIMutex> lock(m_queueMutex);
    m_unsent = std::move(block);
}

void PIGSerial::tickWrite()
{
    const std::lock_guard<std::recursive_mutex> lock(m_sendMutex);
    settleWire();
    PIByteArray block;
    if (isPortAway() || !takeOldest(block))
        return;
    const Fate fate = send(block);
    if (fate == Fate::Stuck)
        reportLost(block, "takes no bytes:");
    else if (fate == Fate::Interrupted)
        keepUnsent(std::move(block));
}

/// Forgets what is out by now. What the port held when it went away did not all reach the wire, but
/// nobody can tell how much: it is not sent again, the far end may have it.
void PIGSerial::settleWire()
{
    if (m_onWire->isEmpty())
        return;
    if (isSamePort(m_onWire->connection()))
        m_onWire->keepLast(unsentBytes());
    else
        reportOnWire("went away while sending:");
}

void PIGSerial::reportOnWire(const char *why)
{
    for (const PIByteArray &block : m_onWire->takeAll())
        reportLost(block, why);
}

void PIGSerial::reportLost(const PIByteArray &block, const char *why) const
{
    if (!block.isEmpty())
        PICout(piDebug) << "Port" << path() << why << "a block of" << block.size() << "bytes is lost:" << block;
}

long long PIGSerial::wireTimeUs(int size) const
{
    // Ten bits whatever the data bits and parity: the hold may be long, never short.
    const long long bits = BitsPerByte + ((property("parameters").toInt() & TwoStopBits) ? 1 : 0);
    const long long speed = property("outSpeed").toInt();
    return speed > 0 ? bits * size * MicrosecondsPerSecond / speed : 0;
}

bool PIGSerial::_write(const PIByteArray &block)
{
    const std::lock_guard<std::recursive_mutex> lock(m_sendMutex);
    return send(block) == Fate::Taken;
}

PISerial::Fate PIGSerial::send(const PIByteArray &block)
{
    const Written written = sendFramed(block);
    if (written.fate == Fate::Taken) {
        m_onWire->add(block, written.connection);
        m_writeTimer.wake(); // to settle it
        settleWire();
    }
    return written.fate;
}

PISerial::Written PIGSerial::sendFramed(const PIByteArray &block)
{
    const long long timeUs = wireTimeUs(block.size());
    const PIUrgent urgent; // outlives the pin: its release must not wait for other work either
    const HeldPin sending(m_pin, m_sendLevel, m_readLevel);
    const Written written = writeBlock(block.data(), block.size());
    piUSleep(timeUs);
    return written;
}

PIString PIGSerial::constructFullPathDevice() const
{
    const PIString line = constructLineText();
    if (line.isEmpty())
        return line;
    return PIString::fromNumber(m_pin) + ":" + PIString::fromNumber(m_readLevel) + ":" +
           PIString::fromNumber(m_sendLevel) + ":" + line;
}

void PIGSerial::configureFromFullPathDevice(const PIString &text)
{
    const std::vector<PIString> fields = text.split(":");
    readNumber(fields, PinField, m_pin);
    readNumber(fields, ReadLevelField, m_readLevel);
    readNumber(fields, SendLevelField, m_sendLevel);
    configureLine(fields, LineFields);
    if (m_pin > 0) {
        PIGPIO::initPin(m_pin, PIGPIO::Out);
        PIGPIO::pinSet(m_pin, m_readLevel != 0);
    }
}

PIString PIGSerial::fullPathDeviceError(const PIString &text) const
{
    const std::vector<PIString> fields = text.split(":");
    const PIString nothing = PIIODevice::fullPathDeviceError(text);
    if (!nothing.isEmpty())
        return nothing;
    const PIString wrongNumber = numberError(fields, {PinField, ReadLevelField, SendLevelField});
    return wrongNumber.isEmpty() ? lineError(fields, LineFields) : wrongNumber;
}
