/// \file
/// One descriptor that stays open.
#pragma once

#include <atomic>
#include <chrono>
#include <limits>
#include <memory>
#include <mutex>
#include <string>

/// Reads a descriptor on a thread of its own, writes to it whole blocks, and opens it again after it
/// went away. Its owner says what opening means.
class StreamLink
{
public:
    /// Counts how often a link was connected: never 0, and never twice the same.
    using Connection = unsigned long long;

    struct Opened {
        int descriptor = -1; ///< Not blocking; -1 when it did not open.
        std::string error;   ///< Then one line without a line break.
    };

    /// What became of a block.
    enum class Fate {
        Taken,       ///< The kernel has all of it.
        Stuck,       ///< The line stood still for too long.
        Interrupted, ///< The line was away, went away, or closed before it took a byte.
    };

    struct Written {
        Fate fate = Fate::Interrupted;
        Connection connection = 0; ///< Which one took it.
    };

    /// Unsent bytes when nobody can tell how many there are.
    static constexpr int UnknownUnsent = std::numeric_limits<int>::max();

    /// What differs from one kind of link to the next. All but byteTime() are called on the reading
    /// thread, or on the thread that opens, closes or writes.
    class Owner
    {
    public:
        /// Opens the descriptor. Must return soon once \a isStopping.
        virtual Opened openLink(const std::atomic<bool> &isStopping) = 0;
        virtual void releaseLink(int descriptor) = 0; ///< Just before it is closed.
        virtual void linkReceived(const char *data, int size) = 0;
        virtual void linkLost(const std::string &reason) = 0; ///< Once for each time that it went away.
        virtual void linkReturned() = 0;                      ///< It is there, at first or again. Not to call the link.

        /// The time that one byte may need on the wire. Any thread.
        virtual std::chrono::microseconds byteTime() const = 0;

    protected:
        ~Owner() = default;
    };

    explicit StreamLink(Owner &owner);
    ~StreamLink(); ///< Closes; an owner whose calls end earlier closes it itself.

    /// False, with \a error, when it does not open; then nothing goes on. True when it is open already.
    bool open(std::string &error);

    /// From now on a write that the line takes nothing of is given up soon. Comes before a close().
    void hurry();

    /// Lets a block that is being written and what the kernel still holds go out as long as the
    /// line takes bytes, then closes. On the reading thread nothing goes out any more, and the end
    /// comes when its handler has returned. Returns how many bytes the kernel drops, or UnknownUnsent.
    int close();

    bool isRunning() const { return m_isRunning; } ///< Between open() and close().
    bool isConnected() const;                      ///< Running, and its descriptor has not gone away.

    /// Whether \a connection is still there; asks the descriptor too, so it is as fresh as can be.
    bool isSame(Connection connection) const;

    int unsentBytes() const; ///< Bytes that the kernel took and holds; 0 when it cannot tell.

    /// Sends all \a size bytes over one connection, waiting while the line takes none; blocks of
    /// several threads never mix.
    Written write(const void *data, int size);

private:
    class Session;

    std::shared_ptr<Session> session() const;
    void setSession(const std::shared_ptr<Session> &session);

    Owner &m_owner;
    mutable std::mutex m_mutex; ///< Guards m_session, not what it does.
    std::shared_ptr<Session> m_session;
    std::atomic<bool> m_isRunning{false};
};
