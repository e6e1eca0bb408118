/// \file
/// What a device received.
#pragma once

#include <piiodevice.h>
#include <piqt.h>

#include <QByteArray>

#include <mutex>

/// Collects the received bytes of a device. Must outlive the device's receiver.
class Inbox
{
public:
    explicit Inbox(PIIODevice &device)
    {
        device.setReceiver([this](const PIByteArray &bytes) {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_bytes.append(bytes);
        });
    }

    QByteArray bytes() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return PI2QByteArray(m_bytes);
    }

private:
    mutable std::mutex m_mutex;
    PIByteArray m_bytes; ///< Not Qt's: its shared data would cross threads unseen by the sanitizer.
};
