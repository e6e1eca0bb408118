/// \file
/// A pseudo terminal as the simulated device's line.
#pragma once

#include "simulator/simulatorline.h"

#include <QSocketNotifier>
#include <QTimer>

#include <memory>

/// The device's end of a pseudo terminal; the other end is a serial port to whoever opens it.
class PtyLine : public SimulatorLine
{
    Q_OBJECT

public:
    /// Makes the pseudo terminal; with a \a link, also a symbolic link of that name to it. Throws a
    /// CommandError when there is none to be had or when \a link names something that must stay.
    explicit PtyLine(const QString &link = QString(), QObject *parent = nullptr);
    ~PtyLine() override; ///< Takes the link away if it still leads here.

    QString name() const override { return m_port; }
    bool write(const QByteArray &bytes) override;

private:
    explicit PtyLine(QObject *parent)
        : SimulatorLine(parent)
    {
    }

    void makeLink(const QString &link);
    void readAll();
    void watchForReader();
    bool isListenedTo() const;

    int m_descriptor = -1;
    QString m_port;
    QString m_link;
    std::unique_ptr<QSocketNotifier> m_readable;
    QTimer m_watch; ///< Runs while nobody has the port open.
};
