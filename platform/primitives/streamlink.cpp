#include "streamlink.h"

#include <algorithm>
#include <array>
#include <asio.hpp>
#include <cerrno>
#include <cstring>
#include <optional>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace
{

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto ReopenPeriod = 200ms;
constexpr auto WritePollPeriod = 10ms;

/// A line that takes nothing for this long, and for the wire time of what a driver buffers, is stuck.
constexpr auto StallLimit = 10s;
constexpr int DriverBuffer = 4096;

/// The same for a link that is about to close. USB adapters report progress in steps of this size.
constexpr auto HurriedStallLimit = 60ms;
constexpr int HurriedStep = 512;

int unsentBytes(int descriptor)
{
    int count = 0;
    return ::ioctl(descriptor, TIOCOUTQ, &count) == 0 ? count : 0;
}

/// Never raises SIGPIPE: a peer that is gone is an error like any other.
ssize_t writeSome(int descriptor, const char *data, size_t size)
{
    const ssize_t sent = ::send(descriptor, data, size, MSG_NOSIGNAL);
    return sent < 0 && errno == ENOTSOCK ? ::write(descriptor, data, size) : sent;
}

bool isRetryable(int error)
{
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

/// Tells a slow line from one that stands still.
class Progress
{
public:
    explicit Progress(std::chrono::microseconds byteTime)
        : m_byteTime(byteTime)
    {
    }

    /// Notes the bytes that are \a unsent in the kernel; fewer than before is progress.
    void note(int unsent)
    {
        if (unsent < m_unsent)
            m_last = Clock::now();
        m_unsent = unsent;
    }

    void advance() { m_last = Clock::now(); }

    bool isStalled(bool isHurried) const
    {
        const auto silence = Clock::now() - m_last;
        return isHurried ? silence >= HurriedStallLimit + m_byteTime * std::min(m_unsent, HurriedStep)
                         : silence >= StallLimit + m_byteTime * DriverBuffer;
    }

private:
    std::chrono::microseconds m_byteTime;
    Clock::time_point m_last = Clock::now();
    int m_unsent = 0;
};

} // namespace

/// The time from one open() to its close().
class StreamLink::Session
{
public:
    Session(Owner &owner, int descriptor)
        : m_owner(owner)
        , m_retry(m_io)
    {
        adopt(descriptor);
    }
    ~Session() { finish(); }

    void start();

    bool isConnected() const { return m_isConnected; }
    bool isReadingThread() const { return m_reader == std::this_thread::get_id(); }
    void hurry() { m_isHurried = true; }
    void stop();
    void stopFromReader();
    int write(const char *data, int size);

private:
    void adopt(int descriptor);
    void readNext();
    void lose(const std::string &reason);
    void dropDescriptor();
    void scheduleReopen();
    void reopen();
    void drain();
    void finish();
    ssize_t attempt(const char *data, int size, std::string &error);
    void awaitRoom(Progress &progress);

    Owner &m_owner;
    asio::io_context m_io{1};
    /// A writer may find the loss first: the reading thread must still be there when it is told.
    asio::executor_work_guard<asio::io_context::executor_type> m_work{m_io.get_executor()};
    asio::steady_timer m_retry;
    std::optional<asio::posix::stream_descriptor> m_stream; ///< Used by the reading thread only.
    std::array<char, 4096> m_buffer{};
    std::thread m_thread;
    std::atomic<std::thread::id> m_reader{std::thread::id()}; ///< Of m_thread, known from its start.
    std::atomic<bool> m_isHurried{false};
    std::atomic<bool> m_isStopping{false};
    std::atomic<bool> m_isConnected{false};
    std::mutex m_descriptorMutex; ///< Keeps the descriptor from being closed during a call on it.
    int m_descriptor = -1;
    std::mutex m_writeMutex; ///< Held for a whole block.
};

void StreamLink::Session::adopt(int descriptor)
{
    const std::lock_guard<std::mutex> lock(m_descriptorMutex);
    m_stream.emplace(m_io, descriptor);
    m_descriptor = descriptor;
    m_isConnected = true;
}

void StreamLink::Session::start()
{
    readNext();
    m_thread = std::thread([this] {
        m_reader = std::this_thread::get_id();
        m_io.run();
        dropDescriptor();
    });
}

void StreamLink::Session::readNext()
{
    m_stream->async_read_some(asio::buffer(m_buffer), [this](const asio::error_code &error, size_t size) {
        if (error == asio::error::operation_aborted)
            return;
        if (error) {
            lose(error == asio::error::eof ? "the other side is gone" : error.message());
            return;
        }
        m_owner.linkReceived(m_buffer.data(), static_cast<int>(size));
        readNext();
    });
}

/// Any thread may find out first; the reading thread cleans up.
void StreamLink::Session::lose(const std::string &reason)
{
    if (!m_isConnected.exchange(false))
        return;
    m_owner.linkLost(reason);
    asio::post(m_io, [this] {
        dropDescriptor();
        scheduleReopen();
    });
}

void StreamLink::Session::dropDescriptor()
{
    const std::lock_guard<std::mutex> lock(m_descriptorMutex);
    m_isConnected = false;
    if (m_descriptor < 0)
        return;
    m_owner.releaseLink(m_descriptor);
    m_descriptor = -1;
    asio::error_code ignored;
    m_stream->close(ignored);
}

void StreamLink::Session::scheduleReopen()
{
    m_retry.expires_after(ReopenPeriod);
    m_retry.async_wait([this](const asio::error_code &error) {
        if (!error)
            reopen();
    });
}

void StreamLink::Session::reopen()
{
    const Opened opened = m_isStopping ? Opened() : m_owner.openLink(m_isStopping);
    if (opened.descriptor < 0) {
        scheduleReopen();
        return;
    }
    m_owner.linkReturned(); // before it can be lost again
    adopt(opened.descriptor);
    readNext();
}

/// What the kernel holds goes out as long as the line takes it; closing would wait without end.
void StreamLink::Session::drain()
{
    Progress progress(m_owner.byteTime());
    while (m_isConnected) {
        const int unsent = unsentBytes(m_descriptor);
        progress.note(unsent);
        if (unsent == 0 || progress.isStalled(true))
            return;
        std::this_thread::sleep_for(1ms);
    }
}

void StreamLink::Session::stop()
{
    m_isHurried = true;
    m_isStopping = true;
    {
        const std::lock_guard<std::mutex> lock(m_writeMutex);
        const std::lock_guard<std::mutex> descriptorLock(m_descriptorMutex);
        drain();
    }
    finish();
}

/// The reading thread cannot wait for its own end: it closes the descriptor when it gets there.
void StreamLink::Session::stopFromReader()
{
    m_isHurried = true;
    m_isStopping = true;
    m_io.stop();
}

void StreamLink::Session::finish()
{
    m_isStopping = true;
    m_io.stop();
    if (m_thread.joinable())
        m_thread.join();
    dropDescriptor();
}

ssize_t StreamLink::Session::attempt(const char *data, int size, std::string &error)
{
    const std::lock_guard<std::mutex> lock(m_descriptorMutex);
    if (!m_isConnected)
        return -1;
    const ssize_t sent = writeSome(m_descriptor, data, static_cast<size_t>(size));
    if (sent >= 0 || isRetryable(errno))
        return std::max<ssize_t>(sent, 0);
    error = std::strerror(errno);
    return -1;
}

void StreamLink::Session::awaitRoom(Progress &progress)
{
    pollfd room{-1, POLLOUT, 0};
    {
        const std::lock_guard<std::mutex> lock(m_descriptorMutex);
        if (!m_isConnected)
            return;
        room.fd = m_descriptor;
        progress.note(unsentBytes(m_descriptor));
    }
    // The descriptor may be closed meanwhile: the next attempt finds out.
    ::poll(&room, 1, static_cast<int>(WritePollPeriod.count()));
}

int StreamLink::Session::write(const char *data, int size)
{
    const std::lock_guard<std::mutex> lock(m_writeMutex);
    if (m_isStopping)
        return -1;
    Progress progress(m_owner.byteTime());
    std::string error;
    int sent = 0;
    while (sent < size) {
        const ssize_t taken = attempt(data + sent, size - sent, error);
        if (taken < 0) {
            if (!error.empty())
                lose(error);
            return -1;
        }
        if (taken > 0) {
            sent += static_cast<int>(taken);
            progress.advance();
        } else if (progress.isStalled(m_isHurried)) {
            return -1;
        } else {
            awaitRoom(progress);
        }
    }
    return m_isConnected ? size : -1;
}

StreamLink::StreamLink(Owner &owner)
    : m_owner(owner)
{
}

StreamLink::~StreamLink()
{
    close();
}

std::shared_ptr<StreamLink::Session> StreamLink::session() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_session;
}

bool StreamLink::open(std::string &error)
{
    if (m_isRunning)
        return true;
    const auto before = session();
    if (before && before->isReadingThread()) {
        error = "a handler of its bytes cannot open it again";
        return false;
    }
    close();

    static const std::atomic<bool> isNeverStopping{false};
    const Opened opened = m_owner.openLink(isNeverStopping);
    if (opened.descriptor < 0) {
        error = opened.error;
        return false;
    }
    const auto session = std::make_shared<Session>(m_owner, opened.descriptor);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_session = session;
    }
    m_isRunning = true;
    session->start();
    return true;
}

void StreamLink::hurry()
{
    if (const auto running = session())
        running->hurry();
}

void StreamLink::close()
{
    const auto running = session();
    m_isRunning = false;
    if (!running)
        return;
    if (running->isReadingThread()) {
        running->stopFromReader();
        return;
    }
    running->stop();
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_session == running)
        m_session.reset();
}

bool StreamLink::isConnected() const
{
    const auto running = session();
    return running && running->isConnected();
}

int StreamLink::write(const void *data, int size)
{
    const auto running = session();
    return running ? running->write(static_cast<const char *>(data), size) : -1;
}
