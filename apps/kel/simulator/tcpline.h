/// \file
/// A TCP port as the simulated device's line.
#pragma once

#include "simulator/simulatorline.h"

#include <QList>
#include <QSocketNotifier>

#include <memory>

class TcpClient;

/// Listens on a TCP port of this machine. Who connects shares the line with the others, as on a bus:
/// all hear the device, and the device hears all.
///
/// It stands on sockets of the system: Qt's network library brings a dozen others along, which every command of the
/// program, a panel first of all, would have to load.
class TcpLine : public SimulatorLine
{
    Q_OBJECT

public:
    /// Listens on \a port; 0 lets the system choose one. Throws a CommandError when it is taken.
    explicit TcpLine(quint16 port, QObject *parent = nullptr);
    ~TcpLine() override; ///< Ends the connections.

    QString name() const override;
    bool write(const QByteArray &bytes) override;

private:
    explicit TcpLine(QObject *parent)
        : SimulatorLine(parent)
    {
    }
    void welcome();
    void addClient(int descriptor);

    int m_descriptor = -1;
    std::unique_ptr<QSocketNotifier> m_calling; ///< Somebody wants to be connected.
    QList<TcpClient *> m_clients;
};
