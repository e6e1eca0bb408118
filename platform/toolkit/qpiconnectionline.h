/// \file
/// One device of a connection.
#pragma once

#include <pibytearray.h>
#include <piiodevice.h>

#include <QByteArray>
#include <QStringList>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

class QPIConnection;
class QPIConnectionLine;

/// What was read and not delivered yet, in the order in which it was read. The threads that read put it in and wake the
/// connection's thread, once for each block. Any thread.
class QPIConnectionInbox
{
public:
    struct Block {
        std::weak_ptr<QPIConnectionLine> line;
        QByteArray bytes;
        std::chrono::steady_clock::time_point time;
    };

    void put(Block block);
    std::optional<Block> take(); ///< The first one.

private:
    std::mutex m_mutex;
    std::deque<Block> m_blocks;
};

/// A device that a QPIConnection has open, with all the names that it was opened by. Writes on a thread
/// of its own and delivers what was read on the connection's thread.
class QPIConnectionLine : public std::enable_shared_from_this<QPIConnectionLine>
{
public:
    using Clock = std::chrono::steady_clock;

    QPIConnectionLine(QPIConnection &connection, std::unique_ptr<PIIODevice> device);
    ~QPIConnectionLine();

    bool open();
    /// What waits goes out if the device takes it at once, else it is told; nothing is delivered any more.
    void close();

    void write(const PIByteArray &block);
    void deliver(const QByteArray &bytes, Clock::time_point time); ///< On the connection's thread.

    PIIODevice &device() const { return *m_device; }
    QStringList &names() { return m_names; } ///< One for each open(), so a name may stand there twice.

private:
    void listen();
    void writeQueued();
    void reportLost(const PIByteArray &block, const char *why) const;
    void endMessage();
    void emitMessage();

    QPIConnection &m_connection;
    std::unique_ptr<PIIODevice> m_device;
    QStringList m_names;

    bool m_isClosed = false;
    QByteArray m_message; ///< What came since the last silence.
    Clock::time_point m_lastDelivered{};
    /// When the newest bytes were read, delivered or not. Shared with the reading thread.
    std::shared_ptr<std::atomic<Clock::rep>> m_lastRead;
    QTimer m_gap;

    std::mutex m_queueMutex; ///< Guards what follows, but for the thread itself.
    std::condition_variable m_queueChanged;
    std::deque<PIByteArray> m_queue; ///< The first block stays until it is written.
    bool m_isEnding = false;
    std::thread m_writer;
};
