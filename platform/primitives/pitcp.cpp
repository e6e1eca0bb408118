#include "pitcp.h"

#include "fullpathtext.h"
#include "picollection.h"
#include "picout.h"
#include "streamlink.h"

#include <algorithm>
#include <asio.hpp>
#include <cerrno>
#include <cstring>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace
{

using namespace std::chrono_literals;
using Endpoints = std::vector<asio::ip::tcp::endpoint>;

constexpr auto ConnectTimeout = 800ms;
constexpr auto ConnectPollPeriod = 20ms;

/// As slow as a network may be before it counts as standing still.
constexpr auto SlowByteTime = 1ms;

constexpr int LargestPort = 65535;

[[maybe_unused]] const bool isRegistered = [] {
    auto *prototype = new PITcp;
    prototype->setName("__S__collection_PITcp__");
    return PICollection::addToGroup("__PIIODevices__", prototype);
}();

struct Address {
    std::string host;
    std::string port;
};

/// Cut at the last ":", as a numeric host may have some; its brackets are taken off.
Address cutAddress(const std::string &text)
{
    const size_t colon = text.rfind(':');
    if (colon == std::string::npos)
        return {text, std::string()};
    std::string host = text.substr(0, colon);
    if (host.size() >= 2 && host.front() == '[' && host.back() == ']')
        host = host.substr(1, host.size() - 2);
    return {host, text.substr(colon + 1)};
}

Endpoints resolve(const std::string &path, std::string &error)
{
    const Address address = cutAddress(path);
    asio::io_context io;
    asio::error_code failed;
    Endpoints endpoints;
    for (const auto &entry : asio::ip::tcp::resolver(io).resolve(address.host, address.port, failed))
        endpoints.push_back(entry.endpoint());
    if (endpoints.empty())
        error = failed ? failed.message() : "the host has no address";
    return endpoints;
}

/// 0 when \a socket is connected, else the error.
int awaitConnection(int socket, std::chrono::milliseconds timeout, const std::atomic<bool> &isStopping)
{
    const auto end = std::chrono::steady_clock::now() + timeout;
    pollfd ready{socket, POLLOUT, 0};
    while (::poll(&ready, 1, static_cast<int>(ConnectPollPeriod.count())) <= 0) {
        if (isStopping)
            return ECANCELED;
        if (std::chrono::steady_clock::now() >= end)
            return ETIMEDOUT;
    }
    int error = 0;
    socklen_t size = sizeof error;
    return ::getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
}

StreamLink::Opened connectTo(const asio::ip::tcp::endpoint &endpoint, std::chrono::milliseconds timeout,
                             const std::atomic<bool> &isStopping)
{
    const int socket = ::socket(endpoint.protocol().family(), SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (socket < 0)
        return {-1, std::strerror(errno)};

    // Commands are short and wait for their answers: each goes out at once.
    const int isOn = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &isOn, sizeof isOn);
    int error = 0;
    if (::connect(socket, endpoint.data(), static_cast<socklen_t>(endpoint.size())) != 0)
        error = errno == EINPROGRESS ? awaitConnection(socket, timeout, isStopping) : errno;
    if (error == 0)
        return {socket, std::string()};
    ::close(socket);
    return {-1, std::strerror(error)};
}

} // namespace

class PITcp::Peer final : private StreamLink::Owner
{
public:
    explicit Peer(PITcp &tcp)
        : m_tcp(tcp)
        , m_link(*this)
    {
    }

    /// Addresses are looked up here only: a look-up can take long, and a reconnection must not.
    bool open(std::string &error)
    {
        if (m_link.isRunning())
            return true;
        const std::string path = m_tcp.path().toUtf8();
        m_link.close();
        m_path = path;
        m_endpoints = resolve(path, error);
        return !m_endpoints.empty() && m_link.open(error);
    }
    StreamLink &link() { return m_link; }

private:
    StreamLink::Opened openLink(const std::atomic<bool> &isStopping) override;
    void releaseLink(int) override {}
    void linkReceived(const char *data, int size) override { m_tcp.received(PIByteArray(data, size)); }
    void linkLost(const std::string &reason) override;
    void linkReturned() override { m_tcp.setAway(false); }
    std::chrono::microseconds byteTime() const override { return SlowByteTime; }

    PITcp &m_tcp;
    std::string m_path;    ///< As it was opened.
    Endpoints m_endpoints; ///< Written only while the link does not run.
    StreamLink m_link;     ///< Last, so that its thread ends first.
};

StreamLink::Opened PITcp::Peer::openLink(const std::atomic<bool> &isStopping)
{
    // A host with several addresses takes no longer than one: each gets its share.
    const std::chrono::milliseconds timeout = ConnectTimeout / std::max<size_t>(m_endpoints.size(), 1);
    StreamLink::Opened opened;
    for (const auto &endpoint : m_endpoints) {
        opened = connectTo(endpoint, timeout, isStopping);
        if (opened.descriptor >= 0 || isStopping)
            break;
    }
    return opened;
}

void PITcp::Peer::linkLost(const std::string &reason)
{
    m_tcp.setAway(true);
    PICout(piDebug) << "The connection to" << m_path << "went away:" << reason;
}

PITcp::PITcp()
    : m_peer(std::make_unique<Peer>(*this))
{
}

PITcp::~PITcp()
{
    close();
}

bool PITcp::openDevice()
{
    const PIString wrong = fullPathDeviceError(path());
    if (!wrong.isEmpty())
        return refuseOpen(PIString("\"") + path() + "\": " + wrong);
    std::string error;
    return m_peer->open(error) || refuseOpen(PIString("There is no connection to ") + path() + ": " + error);
}

bool PITcp::closeDevice()
{
    m_peer->link().close();
    return true;
}

int PITcp::writeDevice(const void *data, int size)
{
    if (size < 0 || (!data && size > 0))
        return -1;
    const StreamLink::Written written = m_peer->link().write(data, size);
    return written.fate == StreamLink::Fate::Taken && m_peer->link().isConnected() ? size : -1;
}

void PITcp::configureFromFullPathDevice(const PIString &text)
{
    if (!text.trimmed().isEmpty())
        setPath(text.trimmed());
}

PIString PITcp::fullPathDeviceError(const PIString &text) const
{
    const Address address = cutAddress(text.trimmed().toUtf8());
    if (address.host.empty() || address.port.empty())
        return "an address is HOST:PORT";
    const PIString port = address.port;
    const bool isPort = isNumberOrEmpty(port) && port.toNumberBase(10) > 0 && port.toNumberBase(10) <= LargestPort;
    return isPort ? PIString() : PIString("a port is a number from 1 to 65535");
}
