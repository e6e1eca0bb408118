/// \file
/// Simulated devices on a line.
#pragma once

#include "simulator/simulateddevice.h"
#include "simulator/simulatorline.h"
#include "traffic/messagegap.h"
#include "traffic/trafficlog.h"
#include "traffic/trafficreplay.h"

#include <QElapsedTimer>
#include <QObject>
#include <QQueue>
#include <QTimer>

#include <deque>
#include <memory>
#include <optional>

/// Lets the devices of a rules file live on a line: hands them the requests, sends their replies when
/// their delay is over, starts their reports, and prints the traffic. Messages of different devices keep a
/// distance of two gaps, so that they do not run together at the far end; requests that ran together on the
/// way here are told apart. One thread with an event loop.
class Simulator : public QObject
{
    Q_OBJECT

public:
    /// A request ends when the line was silent for \a gapMs.
    Simulator(const SimulatorRules &rules, std::unique_ptr<SimulatorLine> line, int gapMs, TrafficLog log,
              QObject *parent = nullptr);

    /// Answers from a recorded log instead of rules.
    Simulator(TrafficReplay replay, std::unique_ptr<SimulatorLine> line, int gapMs, TrafficLog log,
              QObject *parent = nullptr);

    /// Reads and checks the rules file \a path. Throws a CommandError that names the file and the line.
    static SimulatorRules readRules(const QString &path);

    QString lineName() const { return m_line->name(); }

private:
    Simulator(std::unique_ptr<SimulatorLine> line, int gapMs, TrafficLog log, QObject *parent);

    void open();
    void startReports(SimulatedDevice &device);
    void hear(const QByteArray &bytes);
    void answer(const QByteArray &message);
    void sendLater(const QVector<SimulatorReply> &replies, const QString &device);
    void send(const QByteArray &bytes, const QString &device);
    void sendWaiting();
    void sendNow(const QByteArray &bytes, const QString &device);

    struct WaitingMessage {
        QByteArray bytes;
        QString device;
    };

    std::unique_ptr<SimulatorLine> m_line;
    MessageGap m_gap;
    TrafficLog m_log;
    QQueue<WaitingMessage> m_waiting; // for the distance to the message before
    QTimer m_distance;
    QElapsedTimer m_sinceSent;
    QString m_lastDevice;
    int m_distanceMs;
    QVector<AnswerPattern> m_requests; ///< Of all devices, in file order.
    std::optional<TrafficReplay> m_replay;
    QTimer m_opening;                      ///< Runs until somebody hears what a log begins with.
    std::deque<SimulatedDevice> m_devices; // stays in its place: reports refer to their device
};
