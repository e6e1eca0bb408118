#include "qpiconnectionline.h"

#include "qpiconnection.h"

#include <picout.h>
#include <piqt.h>

#include <algorithm>
#include <utility>

namespace
{

/// What waits at closing gets this long to go out.
constexpr auto FarewellTime = std::chrono::milliseconds(50);

/// A source that never falls silent must not fill the memory.
constexpr int LongestMessage = 1 << 20;

} // namespace

void QPIConnectionInbox::put(Block block)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_blocks.push_back(std::move(block));
}

std::optional<QPIConnectionInbox::Block> QPIConnectionInbox::take()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_blocks.empty())
        return std::nullopt;
    Block block = std::move(m_blocks.front());
    m_blocks.pop_front();
    return block;
}

QPIConnectionLine::QPIConnectionLine(QPIConnection &connection, std::unique_ptr<PIIODevice> device)
    : m_connection(connection)
    , m_device(std::move(device))
    , m_lastRead(std::make_shared<std::atomic<Clock::rep>>(0))
{
    m_gap.setSingleShot(true);
    m_gap.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_gap, &QTimer::timeout, [this] { endMessage(); });
}

QPIConnectionLine::~QPIConnectionLine()
{
    close();
}

bool QPIConnectionLine::open()
{
    listen();
    if (!m_device->openQuietly())
        return false;
    m_writer = std::thread([this] { writeQueued(); });
    return true;
}

/// The time is taken where the bytes are read: a busy interface must not glue two messages together.
void QPIConnectionLine::listen()
{
    QPIConnection *connection = &m_connection;
    const auto receive = [connection, inbox = m_connection.m_inbox, lastRead = m_lastRead,
                          weak = weak_from_this()](const PIByteArray &block) {
        const Clock::time_point time = Clock::now();
        *lastRead = time.time_since_epoch().count();
        inbox->put({weak, PI2QByteArray(block), time});
        QMetaObject::invokeMethod(connection, "deliverNext", Qt::QueuedConnection);
    };
    m_device->setReceiver(receive);
}

void QPIConnectionLine::close()
{
    m_isClosed = true;
    m_gap.stop();
    m_device->setReceiver(nullptr);
    {
        std::unique_lock<std::mutex> lock(m_queueMutex);
        if (m_writer.joinable())
            m_queueChanged.wait_for(lock, FarewellTime, [this] { return m_queue.empty(); });
        m_isEnding = true;
    }
    m_queueChanged.notify_all();
    m_device->close();
    if (m_writer.joinable())
        m_writer.join();
}

void QPIConnectionLine::write(const PIByteArray &block)
{
    {
        const std::lock_guard<std::mutex> lock(m_queueMutex);
        m_queue.push_back(block);
    }
    m_queueChanged.notify_all();
}

void QPIConnectionLine::writeQueued()
{
    std::unique_lock<std::mutex> lock(m_queueMutex);
    for (;;) {
        m_queueChanged.wait(lock, [this] { return m_isEnding || !m_queue.empty(); });
        if (m_isEnding)
            break;
        const PIByteArray block = m_queue.front();
        lock.unlock();
        if (m_device->write(block) != block.size())
            reportLost(block, "did not take it:");
        lock.lock();
        m_queue.pop_front();
        m_queueChanged.notify_all();
    }
    for (const PIByteArray &block : m_queue)
        reportLost(block, "was closed before its turn:");
    m_queue.clear();
}

void QPIConnectionLine::reportLost(const PIByteArray &block, const char *why) const
{
    if (!block.isEmpty())
        PICout(piDebug) << m_device->fullPathPrefix() + "://" + m_device->path() << why << "a block of" << block.size()
                        << "bytes is lost:" << block;
}

void QPIConnectionLine::deliver(const QByteArray &bytes, Clock::time_point time)
{
    using std::chrono::milliseconds;
    if (m_isClosed)
        return;
    const auto self = shared_from_this(); // a slot may close the last name
    const milliseconds gap(std::max(m_connection.messageGap(), 0));
    if (time - m_lastDelivered >= gap)
        emitMessage();
    m_lastDelivered = time;
    m_message += bytes;

    QStringList names = m_names;
    names.removeDuplicates();
    for (const QString &name : names)
        Q_EMIT m_connection.received(name, bytes);
    if (m_isClosed)
        return;
    const auto left = std::chrono::ceil<milliseconds>(time + gap - Clock::now());
    if (gap.count() == 0 || m_message.size() >= LongestMessage)
        emitMessage();
    else
        m_gap.start(std::max(left, milliseconds(0)));
}

void QPIConnectionLine::endMessage()
{
    // Newer bytes that are still on their way know themselves whether they belong to this message.
    if (*m_lastRead <= m_lastDelivered.time_since_epoch().count())
        emitMessage();
}

void QPIConnectionLine::emitMessage()
{
    if (m_isClosed || m_message.isEmpty())
        return;
    const auto self = shared_from_this();
    m_gap.stop();
    const QByteArray message = std::exchange(m_message, QByteArray());
    QStringList names = m_names;
    names.removeDuplicates();
    for (const QString &name : names)
        Q_EMIT m_connection.messageReceived(name, message);
}
