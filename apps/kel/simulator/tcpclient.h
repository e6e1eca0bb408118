/// \file
/// One who is connected to the simulated device's TCP port.
#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

/// The near end of a connection. Reads and writes when the system is ready to; never waits.
class TcpClient : public QObject
{
    Q_OBJECT

public:
    /// Owns the \a descriptor, a connected socket that does not block.
    explicit TcpClient(int descriptor, QObject *parent = nullptr);
    ~TcpClient() override;

    /// Sends all of \a bytes, what the system does not take now as soon as it does. False, and nothing is sent, while
    /// too much waits already: one who reads nothing gets no more than that kept.
    bool write(const QByteArray &bytes);

Q_SIGNALS:
    void received(const QByteArray &bytes);
    void left(); ///< Once, when the connection is over.

private:
    void read();
    void send();
    void leave();

    int m_descriptor;
    QByteArray m_unsent;
    QSocketNotifier m_readable;
    QSocketNotifier m_writable;
};
