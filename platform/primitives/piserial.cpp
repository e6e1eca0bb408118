#include "piserial.h"

#include "fullpathtext.h"
#include "picollection.h"
#include "picout.h"
#include "serialline.h"
#include "streamlink.h"

namespace
{

constexpr int DefaultSpeed = 115200;
constexpr int DefaultDataBits = 8;

/// Start bit, eight data bits, stop bit: what a byte takes at most, but for the second stop bit.
constexpr int BitsPerByte = 10;

enum LineField : size_t { PathField, SpeedField, DataBitsField, ParityField, StopBitsField };

/// Makes the kind known as soon as the library is loaded.
[[maybe_unused]] const bool isRegistered = [] {
    auto *prototype = new PISerial;
    prototype->setName("__S__collection_PISerial__");
    return PICollection::addToGroup("__PIIODevices__", prototype);
}();

} // namespace

class PISerial::Port final : private StreamLink::Owner
{
public:
    explicit Port(PISerial &serial)
        : m_serial(serial)
        , m_link(*this)
    {
    }

    bool open(std::string &error)
    {
        m_remark.clear();
        return m_link.open(error);
    }
    bool apply();
    StreamLink &link() { return m_link; }

private:
    LineSettings settings() const;
    std::string path() const { return m_serial.path().toUtf8(); }
    bool applyTo(int descriptor);

    StreamLink::Opened openLink(const std::atomic<bool> &isStopping) override;
    void releaseLink(int descriptor) override;
    void linkReceived(const char *data, int size) override { m_serial.received(PIByteArray(data, size)); }
    void linkLost(const std::string &reason) override;
    void linkReturned() override { m_serial.setAway(false); }
    std::chrono::microseconds byteTime() const override;

    PISerial &m_serial;
    std::mutex m_mutex; ///< Guards what follows.
    int m_descriptor = -1;
    std::string m_remark; ///< Told already.
    StreamLink m_link;    ///< Last, so that its thread ends first.
};

LineSettings PISerial::Port::settings() const
{
    LineSettings settings;
    settings.inSpeed = m_serial.property("inSpeed").toInt();
    settings.outSpeed = m_serial.property("outSpeed").toInt();
    settings.dataBits = m_serial.property("dataBitsCount").toInt();
    settings.hasParity = m_serial.hasParameter(ParityControl);
    settings.isParityOdd = m_serial.hasParameter(ParityOdd);
    settings.hasTwoStopBits = m_serial.hasParameter(TwoStopBits);
    return settings;
}

bool PISerial::Port::applyTo(int descriptor)
{
    const std::string remark = applyLineSettings(descriptor, settings());
    if (!remark.empty() && remark != m_remark)
        PICout(piDebug) << "Port" << path() + ":" << remark;
    m_remark = remark;
    return remark.empty();
}

bool PISerial::Port::apply()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_remark.clear();
    return m_descriptor < 0 || applyTo(m_descriptor);
}

StreamLink::Opened PISerial::Port::openLink(const std::atomic<bool> &)
{
    StreamLink::Opened opened;
    opened.descriptor = openSerialLine(path(), m_serial.property("readOnly").toBool(), opened.error);
    if (opened.descriptor < 0)
        return opened;
    const std::lock_guard<std::mutex> lock(m_mutex);
    applyTo(opened.descriptor);
    m_descriptor = opened.descriptor;
    return opened;
}

void PISerial::Port::releaseLink(int descriptor)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_descriptor = -1;
    releaseSerialLine(descriptor);
}

void PISerial::Port::linkLost(const std::string &reason)
{
    m_serial.setAway(true);
    PICout(piDebug) << "Port" << path() << "went away:" << reason;
}

std::chrono::microseconds PISerial::Port::byteTime() const
{
    const int speed = m_serial.property("outSpeed").toInt();
    const int bits = BitsPerByte + (m_serial.hasParameter(TwoStopBits) ? 1 : 0);
    return std::chrono::microseconds(speed > 0 ? bits * 1000000LL / speed : 0);
}

PISerial::PISerial()
    : m_port(std::make_unique<Port>(*this))
{
    setProperty("inSpeed", DefaultSpeed);
    setProperty("outSpeed", DefaultSpeed);
    setProperty("dataBitsCount", DefaultDataBits);
    setProperty("parameters", 0);
    setProperty("readOnly", false);
}

PISerial::~PISerial()
{
    close();
}

bool PISerial::setSpeed(int bitsPerSecond)
{
    if (bitsPerSecond <= 0) {
        PICout(piDebug) << "A port has no speed of" << bitsPerSecond << "bits per second";
        return false;
    }
    setProperty("inSpeed", bitsPerSecond);
    setProperty("outSpeed", bitsPerSecond);
    return applySettings();
}

bool PISerial::applySettings()
{
    return m_port->apply();
}

bool PISerial::openDevice()
{
    if (path().isEmpty())
        return refuseOpen("A port without a path cannot be opened");
    std::string error;
    return m_port->open(error) || refuseOpen(PIString("Port ") + path() + " does not open: " + error);
}

bool PISerial::closeDevice()
{
    m_unsentAtClose = m_port->link().close();
    return true;
}

int PISerial::writeDevice(const void *data, int size)
{
    if (size < 0 || (!data && size > 0))
        return -1;
    return writeBlock(data, size).fate == Fate::Taken && m_port->link().isConnected() ? size : -1;
}

PISerial::Written PISerial::writeBlock(const void *data, int size)
{
    if (property("readOnly").toBool())
        return {Fate::Stuck, 0};
    const StreamLink::Written written = m_port->link().write(data, size);
    switch (written.fate) {
    case StreamLink::Fate::Taken:
        return {Fate::Taken, written.connection};
    case StreamLink::Fate::Stuck:
        return {Fate::Stuck, written.connection};
    case StreamLink::Fate::Interrupted:
        break;
    }
    return {};
}

bool PISerial::isPortAway() const
{
    return m_port->link().isRunning() && !m_port->link().isConnected();
}

bool PISerial::isSamePort(unsigned long long connection) const
{
    return m_port->link().isSame(connection);
}

int PISerial::unsentBytes() const
{
    return m_port->link().unsentBytes();
}

void PISerial::hurryWrites()
{
    m_port->link().hurry();
}

bool PISerial::hasParameter(Parameter parameter) const
{
    return (property("parameters").toInt() & parameter) != 0;
}

void PISerial::setParameter(Parameter parameter, bool isOn)
{
    const int others = property("parameters").toInt() & ~parameter;
    setProperty("parameters", isOn ? others | parameter : others);
}

PIString PISerial::constructFullPathDevice() const
{
    if (path().contains(":")) {
        PICout(piDebug) << "The port path" << path() << "cannot be part of a full path: it has a \":\"";
        return PIString();
    }
    const char *parity = !hasParameter(ParityControl) ? "N" : hasParameter(ParityOdd) ? "O" : "E";
    return path() + ":" + property("inSpeed").toString() + ":" + property("dataBitsCount").toString() + ":" + parity +
           ":" + (hasParameter(TwoStopBits) ? "2" : "1");
}

void PISerial::configureFromFullPathDevice(const PIString &text)
{
    configureLine(text.split(":"), 0);
}

void PISerial::configureLine(const std::vector<PIString> &fields, size_t first)
{
    const auto field = [&](LineField number) { return fullPathField(fields, first + number); };
    if (!field(PathField).isEmpty())
        setPath(field(PathField));
    if (!field(SpeedField).isEmpty())
        setSpeed(field(SpeedField).toInt());
    if (!field(ParityField).isEmpty()) {
        const PIString letter = field(ParityField).toLowerCase();
        setParameter(ParityControl, !letter.startsWith("n"));
        setParameter(ParityOdd, letter.startsWith("o"));
    }
    if (!field(StopBitsField).isEmpty())
        setParameter(TwoStopBits, field(StopBitsField).toNumberBase() == 2);
    if (!field(DataBitsField).isEmpty())
        setProperty("dataBitsCount", field(DataBitsField).toInt());
    applySettings();
}

PIString PISerial::fullPathDeviceError(const PIString &text) const
{
    const std::vector<PIString> fields = text.split(":");
    return fullPathField(fields, PathField).isEmpty() ? "it names no port" : lineError(fields, 0);
}

PIString PISerial::lineError(const std::vector<PIString> &fields, size_t first)
{
    return numberError(fields, {first + SpeedField, first + DataBitsField, first + StopBitsField});
}

PIString PISerial::numberError(const std::vector<PIString> &fields, std::initializer_list<size_t> numbers)
{
    for (const size_t number : numbers) {
        const PIString field = fullPathField(fields, number);
        if (!isNumberOrEmpty(field))
            return PIString("\"") + field + "\" is no number";
    }
    return PIString();
}
