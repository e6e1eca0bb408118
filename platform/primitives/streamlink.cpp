#include "streamlink.h"

#include "lineprogress.h"

#include <algorithm>
#include <array>
#include <asio.hpp>
#include <cerrno>
#include <cstring>
#include <optional>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace
{

using namespace std::chrono_literals;

constexpr auto ReopenPeriod = 200ms;
constexpr auto WritePollPeriod = 10ms;

std::optional<int> unsentIn(int descriptor)
{
    int count = 0;
    return ::ioctl(descriptor, TIOCOUTQ, &count) == 0 ? std::optional<int>(count) : std::nullopt;
}

bool isHungUp(int descriptor)
{
    pollfd state{descriptor, 0, 0};
    return ::poll(&state, 1, 0) == 1 && (state.revents & (POLLHUP | POLLERR | POLLNVAL));
}

StreamLink::Connection nextConnection()
{
    static std::atomic<StreamLink::Connection> last{0};
    return ++last;
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

} // namespace

/// The time from one open() to its close().
class StreamLink::Session
{
public:
    explicit Session(Owner &owner)
        : m_owner(owner)
        , m_retry(m_io)
    {
    }
    ~Session() { finish(); }

    bool connect(const std::atomic<bool> &isStopping, std::string &error);
    void start();

    bool isConnected() const { return m_connection != None; }
    bool isSame(Connection connection);
    int unsentBytes();
    bool isReadingThread() const { return m_reader == std::this_thread::get_id(); }
    void hurry() { m_isHurried = true; }
    int stop();
    int stopFromReader();
    Written write(const char *data, int size);

private:
    static constexpr Connection None = 0;

    bool adopt(int descriptor, std::string &error);
    void readNext();
    void lose(Connection connection, const std::string &reason);
    void dropDescriptor();
    void scheduleReopen();
    void reopen();
    int drain();
    void finish();
    ssize_t attempt(Connection connection, const char *data, int size);
    void awaitRoom(LineProgress &progress);

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
    std::atomic<Connection> m_connection{None}; ///< None while away.
    std::mutex m_descriptorMutex;               ///< Keeps the descriptor from being closed during a call on it.
    int m_descriptor = -1;
    std::mutex m_writeMutex; ///< Held for a whole block.
};

bool StreamLink::Session::connect(const std::atomic<bool> &isStopping, std::string &error)
{
    const Opened opened = m_owner.openLink(isStopping);
    error = opened.error;
    return opened.descriptor >= 0 && adopt(opened.descriptor, error);
}

bool StreamLink::Session::adopt(int descriptor, std::string &error)
{
    const std::lock_guard<std::mutex> lock(m_descriptorMutex);
    asio::error_code failure;
    m_stream.emplace(m_io);
    m_stream->assign(descriptor, failure);
    if (failure) {
        error = failure.message();
        m_owner.releaseLink(descriptor);
        ::close(descriptor);
        return false;
    }
    m_descriptor = descriptor;
    m_owner.linkReturned(); // before it can be lost again
    m_connection = nextConnection();
    return true;
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
    const Connection connection = m_connection;
    m_stream->async_read_some(asio::buffer(m_buffer), [this, connection](const asio::error_code &error, size_t size) {
        if (error == asio::error::operation_aborted)
            return;
        if (error) {
            lose(connection, error == asio::error::eof ? "the other side is gone" : error.message());
            return;
        }
        m_owner.linkReceived(m_buffer.data(), static_cast<int>(size));
        readNext();
    });
}

/// Any thread may find out first; the reading thread cleans up. Who finds out late must not end the
/// connection that came after.
void StreamLink::Session::lose(Connection connection, const std::string &reason)
{
    if (connection == None || !m_connection.compare_exchange_strong(connection, None))
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
    m_connection = None;
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
    std::string stillAway;
    if (m_isStopping || !connect(m_isStopping, stillAway)) {
        scheduleReopen();
        return;
    }
    readNext();
}

/// What the kernel holds goes out as long as the line takes it; closing would wait without end.
/// Returns what stays behind.
int StreamLink::Session::drain()
{
    LineProgress progress(m_owner.byteTime());
    while (isConnected() && !isHungUp(m_descriptor)) {
        const std::optional<int> unsent = unsentIn(m_descriptor);
        progress.note(unsent);
        if (!unsent || *unsent == 0 || progress.isStalled(true))
            return unsent.value_or(UnknownUnsent);
        std::this_thread::sleep_for(1ms);
    }
    return UnknownUnsent;
}

int StreamLink::Session::stop()
{
    m_isHurried = true;
    m_isStopping = true;
    int dropped = 0;
    {
        const std::lock_guard<std::mutex> lock(m_writeMutex);
        const std::lock_guard<std::mutex> descriptorLock(m_descriptorMutex);
        dropped = drain();
    }
    finish();
    return dropped;
}

/// The reading thread cannot wait for its own end: it closes the descriptor when it gets there.
int StreamLink::Session::stopFromReader()
{
    m_isHurried = true;
    m_isStopping = true;
    m_io.stop();
    return isSame(m_connection) ? unsentBytes() : UnknownUnsent;
}

void StreamLink::Session::finish()
{
    m_isStopping = true;
    m_io.stop();
    if (m_thread.joinable())
        m_thread.join();
    dropDescriptor();
}

bool StreamLink::Session::isSame(Connection connection)
{
    const std::lock_guard<std::mutex> lock(m_descriptorMutex);
    return connection != None && m_connection == connection && !isHungUp(m_descriptor);
}

int StreamLink::Session::unsentBytes()
{
    const std::lock_guard<std::mutex> lock(m_descriptorMutex);
    return isConnected() ? unsentIn(m_descriptor).value_or(0) : 0;
}

/// Never goes on over another connection: its far end would get the tail of a block.
ssize_t StreamLink::Session::attempt(Connection connection, const char *data, int size)
{
    std::string error;
    {
        const std::lock_guard<std::mutex> lock(m_descriptorMutex);
        if (m_connection != connection)
            return -1;
        const ssize_t sent = writeSome(m_descriptor, data, static_cast<size_t>(size));
        if (sent >= 0 || isRetryable(errno))
            return std::max<ssize_t>(sent, 0);
        error = std::strerror(errno);
    }
    lose(connection, error);
    return -1;
}

void StreamLink::Session::awaitRoom(LineProgress &progress)
{
    pollfd room{-1, POLLOUT, 0};
    {
        const std::lock_guard<std::mutex> lock(m_descriptorMutex);
        if (!isConnected())
            return;
        room.fd = m_descriptor;
        progress.note(unsentIn(m_descriptor));
    }
    // The descriptor may be closed meanwhile: the next attempt finds out.
    ::poll(&room, 1, static_cast<int>(WritePollPeriod.count()));
}

StreamLink::Written StreamLink::Session::write(const char *data, int size)
{
    const std::lock_guard<std::mutex> lock(m_writeMutex);
    const Connection connection = m_connection;
    if (m_isStopping || connection == None)
        return {};
    LineProgress progress(m_owner.byteTime());
    int sent = 0;
    while (sent < size) {
        const ssize_t taken = attempt(connection, data + sent, size - sent);
        if (taken < 0)
            return {};
        if (taken > 0) {
            sent += static_cast<int>(taken);
            progress.advance();
        } else if (progress.isStalled(m_isHurried)) {
            return {sent == 0 && m_isHurried ? Fate::Interrupted : Fate::Stuck, connection};
        } else {
            awaitRoom(progress);
        }
    }
    return {Fate::Taken, connection};
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
    try {
        const auto session = std::make_shared<Session>(m_owner);
        if (!session->connect(isNeverStopping, error))
            return false;
        setSession(session);
        m_isRunning = true;
        session->start();
        return true;
    } catch (const std::system_error &failure) {
        // The system has no descriptor or thread left for it.
        m_isRunning = false;
        setSession(nullptr);
        error = failure.what();
        return false;
    }
}

void StreamLink::setSession(const std::shared_ptr<Session> &session)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_session = session;
}

void StreamLink::hurry()
{
    if (const auto running = session())
        running->hurry();
}

int StreamLink::close()
{
    const auto running = session();
    m_isRunning = false;
    if (!running)
        return 0;
    if (running->isReadingThread())
        return running->stopFromReader();
    const int dropped = running->stop();
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_session == running)
        m_session.reset();
    return dropped;
}

bool StreamLink::isConnected() const
{
    const auto running = session();
    return running && running->isConnected();
}

bool StreamLink::isSame(Connection connection) const
{
    const auto running = session();
    return running && running->isSame(connection);
}

int StreamLink::unsentBytes() const
{
    const auto running = session();
    return running ? running->unsentBytes() : 0;
}

StreamLink::Written StreamLink::write(const void *data, int size)
{
    const auto running = session();
    return running ? running->write(static_cast<const char *>(data), size) : Written();
}
