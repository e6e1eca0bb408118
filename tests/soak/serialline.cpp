#include "serialline.h"

#include "fakepins.h"
#include "ptypair.h"
#include "soakdevice.h"
#include "usage.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSocketNotifier>
#include <QTimer>
#include <gserial.h>
#include <piqt.h>
#include <pitimer.h>
#include <qtimerwidget.h>

#include <atomic>
#include <cstdio>
#include <unistd.h>

namespace
{

constexpr int TickMs = 50;
constexpr int TicksPerMessage = 4;
constexpr int Samples = 30;
constexpr int DrainMs = 2000; ///< For what is still on its way at the end.
constexpr int SpeedBaud = 115200;
constexpr int Pin = 18;

/// Counts the ticks of a timer, on the timer's thread.
class TickCount : public PIObject
{
public:
    TickCount()
    {
        addHandler("count", [this] { ++m_ticks; });
    }
    ~TickCount() override { disconnectAll(); }

    PIString className() const override { return "TickCount"; }
    PIString parentClassName() const override { return "PIObject"; }
    long long ticks() const { return m_ticks; }

private:
    std::atomic<long long> m_ticks{0};
};

/// A device, its port, and a far end that sends everything back.
class SoakLine
{
public:
    SoakLine();
    ~SoakLine();

    bool live(double minutes);

private:
    void tick();
    void answer();
    void take(const QByteArray &bytes);
    bool isInOrder(double elapsedMs);

    FakePins m_pins;
    PtyPair m_pty;
    PIGSerial m_serial;
    SoakDevice m_device;
    QTimerWidget m_timer;
    TickCount m_count;
    PITimer m_thread;
    QSocketNotifier m_farEnd{m_pty.master(), QSocketNotifier::Read};
    QByteArray m_received; ///< The start of a message.
    long long m_ticks = 0;
    long long m_sent = 0;
    long long m_answers = 0;
    long long m_misplaced = 0;
    long long m_pulses = 0;
};

SoakLine::SoakLine()
{
    m_serial.configureFromFullPathDevice(
        Q2PIString(QStringLiteral("%1:0:1:%2:%3:8:N:1").arg(Pin).arg(m_pty.path()).arg(SpeedBaud)));
    m_serial.setReceiver([this](const PIByteArray &bytes) {
        QMetaObject::invokeMethod(
            &m_device, [this, data = PI2QByteArray(bytes)] { take(data); }, Qt::QueuedConnection);
    });
    QObject::connect(&m_farEnd, &QSocketNotifier::activated, &m_device, [this] { answer(); });
    QObject::connect(&m_device, &LocalDevice::sending, &m_device, [this](const PIByteArray &bytes) {
        ++m_sent;
        m_serial.write(bytes);
    });
    QObject::connect(&m_device, &LocalDevice::receivedAnswerArg0, &m_device, [this](int value) {
        if (value != int(m_answers++ % 256))
            ++m_misplaced;
    });
    QObject::connect(&m_timer, &QTimerWidget::tick, &m_device, [this] { tick(); });
    PIObject::piConnectU(&m_thread, "tickEvent", &m_count, "count", "soak");
}

SoakLine::~SoakLine()
{
    m_thread.stop();
    m_serial.setReceiver({});
    m_serial.close();
}

void SoakLine::tick()
{
    if (++m_ticks % TicksPerMessage != 0)
        return;
    m_device.setArgument0(int(m_sent % 256));
    m_device.sendCommand(1);
}

void SoakLine::answer()
{
    char bytes[256];
    const ssize_t size = read(m_pty.master(), bytes, sizeof bytes);
    if (size > 0)
        m_pty.write(QByteArray(bytes, int(size)));
}

// The line gives bytes, not messages.
void SoakLine::take(const QByteArray &bytes)
{
    m_received += bytes;
    for (; m_received.size() >= 2; m_received.remove(0, 2))
        m_device.dataReceived(m_received.left(2), QString());
}

bool SoakLine::live(double minutes)
{
    if (!m_serial.open())
        return false;
    const auto durationMs = qint64(minutes * 60000.0);
    UsageLog log(Samples);
    QElapsedTimer elapsed;
    QTimer sampling;
    QObject::connect(&sampling, &QTimer::timeout, &m_device, [&] {
        for (const FakePins::Record &record : m_pins.records())
            m_pulses += record.call == FakePins::Call::Set && record.isHigh;
        m_pins.clear();
        log.add("minute", double(elapsed.elapsed()) / 60000.0);
    });
    sampling.start(int(durationMs / Samples));
    m_timer.setInterval(TickMs);
    elapsed.start();
    m_timer.start();
    m_thread.start(TickMs);
    while (elapsed.elapsed() < durationMs)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    const double elapsedMs = double(elapsed.elapsed());
    m_thread.stop();
    m_timer.stop();
    sampling.stop();
    for (QElapsedTimer drain;
         m_answers < m_sent && (!drain.isValid() ? (drain.start(), true) : drain.elapsed() < DrainMs);)
        QCoreApplication::processEvents(QEventLoop::AllEvents, TickMs);
    return bool(unsigned(isInOrder(elapsedMs)) & unsigned(log.isSteady()));
}

bool SoakLine::isInOrder(double elapsedMs)
{
    for (const FakePins::Record &record : m_pins.records())
        m_pulses += record.call == FakePins::Call::Set && record.isHigh;
    const double due = elapsedMs / TickMs;
    std::printf("%.1f s: %lld messages sent, %lld came back, %lld out of order, %lld pulses of the pin\n",
                elapsedMs / 1000.0, m_sent, m_answers, m_misplaced, m_pulses);
    std::printf("ticks of %d ms: %.1f due, %lld of the thread's timer, %lld of the panel's\n", TickMs, due,
                m_count.ticks(), m_ticks);
    // A busy machine leaves ticks out, but none comes early: more of them than are due would be a drift.
    const bool isRight = m_sent > 0 && m_answers == m_sent && m_misplaced == 0 && m_pulses == m_sent &&
                         double(m_count.ticks()) <= due + 1.0 && double(m_count.ticks()) >= 0.9 * due - 2.0;
    std::printf("the line is %s\n", isRight ? "right" : "WRONG");
    return isRight;
}

} // namespace

bool soakLine(double minutes)
{
    return SoakLine().live(minutes);
}
