#include "piiodevice.h"

#include "picollection.h"
#include "picout.h"

#include <memory>
#include <utility>

namespace
{

constexpr const char *PrototypeGroup = "__PIIODevices__";
constexpr const char *PrefixEnd = "://";

struct FullPath {
    PIString prefix;
    PIString device;
};

/// Cut at the first "://"; without one the prefix is empty.
FullPath cutFullPath(const PIString &text)
{
    const std::string utf8 = text.toUtf8();
    const size_t end = utf8.find(PrefixEnd);
    if (end == std::string::npos)
        return {PIString(), text};
    return {PIString(utf8.substr(0, end)), PIString(utf8.substr(end + std::string(PrefixEnd).size()))};
}

const PIIODevice *findPrototype(const PIString &prefix)
{
    for (const PIObject *object : PICollection::groupElements(PrototypeGroup)) {
        const auto *device = dynamic_cast<const PIIODevice *>(object);
        if (device && device->fullPathPrefix() == prefix)
            return device;
    }
    return nullptr;
}

} // namespace

PIIODevice::PIIODevice()
{
    setProperty("path", PIString());
}

bool PIIODevice::open()
{
    const bool isOpen = openQuietly();
    if (!isOpen)
        PICout(piDebug) << openError();
    return isOpen;
}

bool PIIODevice::openQuietly()
{
    const std::lock_guard<std::recursive_mutex> lock(m_openMutex);
    if (m_isWanted)
        return true;

    {
        const std::lock_guard<std::mutex> errorLock(m_errorMutex);
        m_openError = PIString();
    }
    m_isAway = false; // before opening: from then on the far end may leave at any time
    m_isWanted = openDevice();
    if (!m_isWanted)
        closeDevice();
    return m_isWanted;
}

bool PIIODevice::close()
{
    const std::lock_guard<std::recursive_mutex> lock(m_openMutex);
    m_isWanted = false;
    return closeDevice();
}

PIString PIIODevice::openError() const
{
    const std::lock_guard<std::mutex> lock(m_errorMutex);
    return m_openError;
}

bool PIIODevice::refuseOpen(const PIString &reason)
{
    const std::lock_guard<std::mutex> lock(m_errorMutex);
    m_openError = reason;
    return false;
}

void PIIODevice::setReceiver(Receiver receiver)
{
    const std::lock_guard<std::recursive_mutex> lock(m_receiverMutex);
    m_receiver = std::move(receiver);
}

void PIIODevice::received(const PIByteArray &bytes)
{
    const std::lock_guard<std::recursive_mutex> lock(m_receiverMutex);
    const Receiver receiver = m_receiver; // it may replace itself
    try {
        if (receiver)
            receiver(bytes);
    } catch (...) {
        PICout(piDebug) << className() << "lost" << bytes.size() << "bytes: their receiver failed";
    }
}

PIString PIIODevice::constructFullPath() const
{
    const PIString device = constructFullPathDevice();
    return device.isEmpty() ? PIString() : fullPathPrefix() + PrefixEnd + device;
}

PIString PIIODevice::fullPathError(const PIString &fullPath)
{
    const FullPath path = cutFullPath(fullPath);
    if (path.prefix.isEmpty())
        return PIString("\"") + fullPath + "\" is no device path: it does not start with \"prefix://\"";
    const PIIODevice *prototype = findPrototype(path.prefix);
    if (!prototype)
        return PIString("\"") + fullPath + "\": there is no kind of device called \"" + path.prefix + "\"";
    const PIString error = prototype->fullPathDeviceError(path.device);
    return error.isEmpty() ? error : PIString("\"") + fullPath + "\": " + error;
}

PIIODevice *PIIODevice::createFromFullPath(const PIString &fullPath)
{
    const PIString error = fullPathError(fullPath);
    if (!error.isEmpty()) {
        PICout(piDebug) << error;
        return nullptr;
    }
    const FullPath path = cutFullPath(fullPath);
    std::unique_ptr<PIIODevice> device(findPrototype(path.prefix)->copy());
    device->configureFromFullPathDevice(path.device);
    return device.release();
}

PIString PIIODevice::fullPathDeviceError(const PIString &text) const
{
    return text.isEmpty() ? "nothing follows the prefix" : PIString();
}
