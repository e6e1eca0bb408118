#include "piobject.h"

#include "picollection.h"
#include "picout.h"

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace
{

// One connection. Source and target both hold it; it outlives either of them for as long as an event
// that is just being raised still looks at it.
class Connection
{
public:
    Connection(PIString event, PIObject::Handler handler)
        : m_event(std::move(event))
        , m_handler(std::move(handler))
    {
    }

    const PIString &event() const { return m_event; }

    bool isLive() const
    {
        const std::lock_guard lock(m_mutex);
        return m_live;
    }

    void run()
    {
        const auto self = std::this_thread::get_id();
        {
            const std::lock_guard lock(m_mutex);
            if (!m_live)
                return;
            m_runners.insert(self);
        }
        m_handler();
        const std::lock_guard lock(m_mutex);
        m_runners.erase(m_runners.find(self));
        m_idle.notify_all();
    }

    void sever()
    {
        std::unique_lock lock(m_mutex);
        m_live = false;
        const auto self = std::this_thread::get_id();
        m_idle.wait(lock, [&] { return m_runners.size() == m_runners.count(self); });
    }

private:
    const PIString m_event;
    const PIObject::Handler m_handler;
    mutable std::mutex m_mutex;
    std::condition_variable m_idle;
    bool m_live = true;
    std::multiset<std::thread::id> m_runners;
};

using Connections = std::vector<std::shared_ptr<Connection>>;

void dropDead(Connections &connections)
{
    const auto isDead = [](const auto &connection) { return !connection->isLive(); };
    connections.erase(std::remove_if(connections.begin(), connections.end(), isDead), connections.end());
}

bool refuse(const PIString &reason, const PIString &name, const PIString &location)
{
    PICout(piDebug) << "piConnectU:" << reason << name << "at" << location;
    return false;
}

} // namespace

struct PIObject::Private {
    mutable std::mutex mutex; // guards all that follows; never held while a handler runs
    PIString name;
    std::map<PIString, PIVariant> properties;
    std::set<PIString> events;
    std::map<PIString, Handler> handlers;
    Connections outgoing;
    Connections incoming;
};

PIObject::PIObject(const PIString &name)
    : d(std::make_unique<Private>())
{
    d->name = name;
}

PIObject::~PIObject()
{
    disconnectAll();
    PICollection::remove(this);
}

PIString PIObject::name() const
{
    const std::lock_guard lock(d->mutex);
    return d->name;
}

void PIObject::setName(const PIString &name)
{
    const std::lock_guard lock(d->mutex);
    d->name = name;
}

PIVariant PIObject::property(const PIString &name) const
{
    const std::lock_guard lock(d->mutex);
    const auto found = d->properties.find(name);
    return found == d->properties.end() ? PIVariant() : found->second;
}

void PIObject::setProperty(const PIString &name, const PIVariant &value)
{
    {
        const std::lock_guard lock(d->mutex);
        PIVariant &stored = d->properties[name];
        if (stored == value)
            return;
        stored = value;
    }
    propertyChanged(name);
}

bool PIObject::hasEvent(const PIString &event) const
{
    const std::lock_guard lock(d->mutex);
    return d->events.count(event) != 0;
}

bool PIObject::hasHandler(const PIString &handler) const
{
    const std::lock_guard lock(d->mutex);
    return d->handlers.count(handler) != 0;
}

bool PIObject::piConnectU(PIObject *source, const PIString &event, PIObject *target, const PIString &handler,
                          const PIString &location)
{
    if (!source || !target)
        return refuse("no object for", source ? handler : event, location);
    if (!source->hasEvent(event))
        return refuse(source->className() + " has no event", event, location);
    if (!target->hasHandler(handler))
        return refuse(target->className() + " has no handler", handler, location);

    std::shared_ptr<Connection> connection;
    {
        const std::lock_guard lock(target->d->mutex);
        connection = std::make_shared<Connection>(event, target->d->handlers[handler]);
        dropDead(target->d->incoming);
        target->d->incoming.push_back(connection);
    }
    const std::lock_guard lock(source->d->mutex);
    dropDead(source->d->outgoing);
    source->d->outgoing.push_back(connection);
    return true;
}

void PIObject::disconnectAll()
{
    Connections ended;
    {
        const std::lock_guard lock(d->mutex);
        ended.swap(d->outgoing);
        ended.insert(ended.end(), d->incoming.begin(), d->incoming.end());
        d->incoming.clear();
    }
    for (const auto &connection : ended)
        connection->sever();
}

void PIObject::addEvent(const PIString &event)
{
    const std::lock_guard lock(d->mutex);
    d->events.insert(event);
}

void PIObject::addHandler(const PIString &name, Handler handler)
{
    const std::lock_guard lock(d->mutex);
    d->handlers[name] = std::move(handler);
}

void PIObject::raiseEvent(const PIString &event)
{
    Connections current;
    {
        const std::lock_guard lock(d->mutex);
        current = d->outgoing;
    }
    // From here on nothing of this object is used, as a handler may delete it.
    for (const auto &connection : current) {
        if (connection->event() == event)
            connection->run();
    }
}

void PIObject::propertyChanged(const PIString &) {}
