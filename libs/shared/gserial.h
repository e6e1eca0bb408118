/// \file
/// A serial port for half-duplex line drivers.
#pragma once

#include <kelwidgetsexport.h>
#include <pimutex.h>
#include <piqueue.h>
#include <piserial.h>
#include <pitimer.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>

class BlocksOnWire;

/// A serial port that queues what is written and sends one block every 50 ms, holding a pin at its
/// send level for the time that the block needs on the wire.
///
/// Full paths are "gser://PIN:READLEVEL:SENDLEVEL:PATH:SPEED:DATABITS:PARITY:STOPBITS", for example
/// "gser://18:0:1:/dev/ttyS0:115200:8:N:1". A pin not above 0 means that no pin is driven; a level other
/// than 0 is high. Without settings no pin is driven.
///
/// Blocks are sent on a thread of the device's own and need no event loop. They are sent in the order
/// in which they were written, never merged and never closer together than the ticks. Closing keeps
/// the blocks that wait; they go out when the device is open again. A block that meets a port that went
/// away is sent whole when the port is back.
///
/// No block vanishes silently, and none is sent twice. A console line names each one that is lost, with
/// all its bytes: the line took no more of it; the port went away or was closed while it held bytes of
/// it, so it may be lost; or the device was destroyed before its turn.
class KEL_WIDGETS_EXPORT PIGSerial : public PISerial
{
public:
    PIGSerial();
    ~PIGSerial() override; ///< Closes; a console line for each block that still waits.

    PIString className() const override { return "PIGSerial"; }
    PIString parentClassName() const override { return "PISerial"; }
    PIString fullPathPrefix() const override { return "gser"; }
    PIIODevice *copy() const override { return new PIGSerial; }

    int pin() const { return m_pin; }
    int readLevel() const { return m_readLevel; } ///< As configured; any number but 0 is high.
    int sendLevel() const { return m_sendLevel; } ///< Likewise.

    bool openDevice() override;
    /// Lets a block that is just being sent end with its full hold, then closes the port.
    bool closeDevice() override;
    /// Queues a copy of the block, open or not, and returns \a size at once. Any thread.
    int writeDevice(const void *data, int size) override;

    PIString constructFullPathDevice() const override;
    /// Empty and missing fields leave their settings, fields after the eighth are ignored. A pin above
    /// 0 is made an output at its read level after all fields have been taken.
    void configureFromFullPathDevice(const PIString &text) override;
    PIString fullPathDeviceError(const PIString &text) const override;

    /// Sends the oldest block; the handler "tickWrite" of the write timer, which rests while there is none. Does
    /// nothing while the port is away.
    void tickWrite();

    /// Sends \a block now: send level, write, wait for its time on the wire, read level. The read
    /// level comes whatever happens before. True when the port took the whole block. Blocks of several
    /// threads are sent one after the other.
    bool _write(const PIByteArray &block);

private:
    Written sendFramed(const PIByteArray &block);
    Fate send(const PIByteArray &block);
    long long wireTimeUs(int size) const;
    bool takeOldest(PIByteArray &block);
    void keepUnsent(PIByteArray block);
    void settleWire();
    void reportOnWire(const char *why);
    void reportLost(const PIByteArray &block, const char *why) const;

    PITimer m_writeTimer;
    PIQueue<PIByteArray> m_queue;
    PIMutex m_queueMutex;
    std::atomic<int> m_pin{0};
    std::atomic<int> m_readLevel{0};
    std::atomic<int> m_sendLevel{0};
    std::optional<PIByteArray> m_unsent; ///< Older than the queue: met a port that went away. Guarded as the queue is.
    std::recursive_mutex m_sendMutex;    ///< Held for a whole block, pin and wait included.
    std::unique_ptr<BlocksOnWire> m_onWire; ///< Never null. Guarded by m_sendMutex.
};
