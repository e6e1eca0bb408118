/// \file
/// A TCP port as the simulated device's line.
#pragma once

#include "simulator/simulatorline.h"

#include <QList>
#include <QTcpServer>

/// Listens on a TCP port of this machine. Who connects shares the line with the others, as on a bus:
/// all hear the device, and the device hears all.
class TcpLine : public SimulatorLine
{
    Q_OBJECT

public:
    /// Listens on \a port; 0 lets the system choose one. Throws a CommandError when it is taken.
    explicit TcpLine(quint16 port, QObject *parent = nullptr);

    QString name() const override;
    bool write(const QByteArray &bytes) override;

private:
    void welcome();

    QList<QTcpSocket *> m_clients;
    QTcpServer m_server; ///< Last: its end is that of the clients, who take themselves off the list.
};
