#include "simulator/simulator.h"

#include "command.h"
#include "simulator/requestsplit.h"
#include "wholefile.h"

#include <QTimer>

#include <utility>

namespace
{

constexpr qint64 MaxRulesSize = 1024 * 1024;
constexpr int MaxWaiting = 64;
constexpr int OpeningPeriodMs = 100;

} // namespace

SimulatorRules Simulator::readRules(const QString &path)
{
    const QByteArray text = readWholeFile(path, MaxRulesSize);
    if (text.size() > MaxRulesSize)
        throw CommandError(QStringLiteral("%1: larger than 1 MiB, so hardly a rules file").arg(path));

    SimulatorRules rules = SimulatorRules::fromText(text, path);
    for (const SimulatorDeviceRules &device : std::as_const(rules.devices)) {
        if (rules.error.isEmpty())
            rules.error = SimulatedDevice::firstBadExpression(device, path);
    }
    if (!rules.error.isEmpty())
        throw CommandError(rules.error);
    return rules;
}

Simulator::Simulator(std::unique_ptr<SimulatorLine> line, int gapMs, TrafficLog log, QObject *parent)
    : QObject(parent)
    , m_line(std::move(line))
    , m_gap(gapMs)
    , m_log(std::move(log))
    , m_distanceMs(2 * gapMs)
{
    m_distance.setSingleShot(true);
    m_distance.setTimerType(Qt::PreciseTimer);
    connect(&m_distance, &QTimer::timeout, this, &Simulator::sendWaiting);
    connect(m_line.get(), &SimulatorLine::received, &m_gap, &MessageGap::add);
    connect(&m_gap, &MessageGap::message, this, &Simulator::hear);
}

Simulator::Simulator(const SimulatorRules &rules, std::unique_ptr<SimulatorLine> line, int gapMs, TrafficLog log,
                     QObject *parent)
    : Simulator(std::move(line), gapMs, std::move(log), parent)
{
    for (const SimulatorDeviceRules &device : rules.devices) {
        m_devices.emplace_back(device, [this](const QString &error) { m_log.note(error); });
        startReports(m_devices.back());
        for (const SimulatorRule &rule : device.rules)
            m_requests << rule.request;
    }
}

Simulator::Simulator(TrafficReplay replay, std::unique_ptr<SimulatorLine> line, int gapMs, TrafficLog log,
                     QObject *parent)
    : Simulator(std::move(line), gapMs, std::move(log), parent)
{
    m_replay = std::move(replay);
    connect(&m_opening, &QTimer::timeout, this, &Simulator::open);
    if (!m_replay->opening().isEmpty())
        m_opening.start(OpeningPeriodMs);
}

void Simulator::open()
{
    QVector<SimulatorReply> opening = m_replay->opening();
    const QByteArray first = opening.takeFirst().bytes;
    if (!m_line->write(first))
        return;
    m_opening.stop();
    m_sinceSent.start();
    m_log.sent(first);
    sendLater(opening, QString());
}

void Simulator::startReports(SimulatedDevice &device)
{
    for (int i = 0; i < device.rules().reports.size(); ++i) {
        auto *timer = new QTimer(this);
        connect(timer, &QTimer::timeout, this,
                [this, &device, i] { sendLater(device.report(i), device.rules().name); });
        timer->start(device.rules().reports.at(i).periodMs);
    }
}

void Simulator::hear(const QByteArray &bytes)
{
    const QVector<QByteArray> messages = m_replay ? QVector<QByteArray>{bytes} : requestsIn(bytes, m_requests);
    for (const QByteArray &message : messages)
        answer(message);
}

void Simulator::answer(const QByteArray &message)
{
    if (m_replay) {
        const auto replies = m_replay->answer(message);
        m_log.received(message, replies ? QString() : QStringLiteral("never asked in the log"));
        return sendLater(replies.value_or(QVector<SimulatorReply>()), QString());
    }
    for (SimulatedDevice &device : m_devices) {
        const auto replies = device.answer(message);
        if (!replies)
            continue;
        m_log.received(message, device.rules().name);
        return sendLater(*replies, device.rules().name);
    }
    m_log.received(message, QStringLiteral("no rule for it"));
}

void Simulator::sendLater(const QVector<SimulatorReply> &replies, const QString &device)
{
    for (const SimulatorReply &reply : replies) {
        if (reply.delayMs == 0)
            send(reply.bytes, device);
        else
            QTimer::singleShot(reply.delayMs, Qt::PreciseTimer, this,
                               [this, bytes = reply.bytes, device] { send(bytes, device); });
    }
}

void Simulator::send(const QByteArray &bytes, const QString &device)
{
    const qint64 quietMs = m_sinceSent.isValid() ? m_sinceSent.elapsed() : m_distanceMs;
    // What was recorded as several messages has to stay several.
    const bool mayFollow = device == m_lastDevice && !m_replay;
    if (m_waiting.isEmpty() && (mayFollow || quietMs >= m_distanceMs))
        return sendNow(bytes, device);
    if (m_waiting.size() >= MaxWaiting)
        return m_log.note(QStringLiteral("the line is too busy, a message of %1 is lost")
                              .arg(device.isEmpty() ? QStringLiteral("the log") : device));
    m_waiting.enqueue({bytes, device});
    if (!m_distance.isActive())
        m_distance.start(int(m_distanceMs - quietMs));
}

void Simulator::sendWaiting()
{
    const WaitingMessage message = m_waiting.dequeue();
    sendNow(message.bytes, message.device);
    if (!m_waiting.isEmpty())
        m_distance.start(m_distanceMs);
}

void Simulator::sendNow(const QByteArray &bytes, const QString &device)
{
    m_sinceSent.start();
    m_lastDevice = device;
    // A report that nobody hears is not worth a line each time.
    if (m_line->write(bytes))
        m_log.sent(bytes, device);
}
