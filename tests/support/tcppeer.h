/// \file
/// A network server without a network.
#pragma once

#include <QByteArray>
#include <QString>

/// Listens on a free port of this machine and talks to one client at a time.
class TcpPeer
{
public:
    TcpPeer(); ///< Listens at once.
    ~TcpPeer();

    TcpPeer(const TcpPeer &) = delete;
    TcpPeer &operator=(const TcpPeer &) = delete;

    int port() const { return m_port; }
    QString address() const; ///< "127.0.0.1:PORT".

    void stopListening(); ///< New clients are refused.
    void listenAgain();   ///< On the same port.

    bool accept(int timeoutMs = 5000); ///< Takes the next client in place of the one before.
    void hangUp();

    QByteArray read(int count, int timeoutMs = 5000); ///< \a count bytes, or what came in time.
    bool write(const QByteArray &bytes);

private:
    int m_port = 0;
    int m_listener = -1;
    int m_client = -1;
};
