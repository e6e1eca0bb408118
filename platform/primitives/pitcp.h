/// \file
/// Network peers.
#pragma once

#include <piiodevice.h>

#include <memory>

/// A connection to a TCP server: full paths "tcp://HOST:PORT", for example "tcp://127.0.0.1:5020" or
/// "tcp://[::1]:5020". The part below the prefix is the property "path".
///
/// A connection that is lost is reported once on standard error and made again as soon as the server
/// takes it.
class KEL_PRIMITIVES_EXPORT PITcp : public PIIODevice
{
public:
    PITcp();
    ~PITcp() override;

    PIString className() const override { return "PITcp"; }
    PIString parentClassName() const override { return "PIIODevice"; }

    PIString fullPathPrefix() const override { return "tcp"; }
    PIIODevice *copy() const override { return new PITcp; }
    bool openDevice() override; ///< False when the server does not answer within 800 ms.
    bool closeDevice() override;

    /// Returns \a size when the system took the whole block; -1 when the connection is away, goes
    /// away, or takes nothing for some fifteen seconds.
    int writeDevice(const void *data, int size) override;

    PIString constructFullPathDevice() const override { return path(); }
    void configureFromFullPathDevice(const PIString &text) override;
    PIString fullPathDeviceError(const PIString &text) const override;

private:
    class Peer;

    std::unique_ptr<Peer> m_peer;
};
