#include "traffic/messagegap.h"

#include <utility>

MessageGap::MessageGap(int gapMs, QObject *parent)
    : QObject(parent)
{
    m_silence.setSingleShot(true);
    m_silence.setTimerType(Qt::PreciseTimer);
    m_silence.setInterval(gapMs);
    connect(&m_silence, &QTimer::timeout, this, &MessageGap::finish);
}

void MessageGap::add(const QByteArray &bytes)
{
    m_bytes += bytes;
    if (m_bytes.size() >= MaxMessageSize)
        finish();
    else
        m_silence.start();
}

void MessageGap::finish()
{
    m_silence.stop();
    Q_EMIT message(std::exchange(m_bytes, QByteArray()));
}
