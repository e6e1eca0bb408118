#include "qtimerwidget.h"

#include <QPainter>
#include <QPointer>
#include <QShowEvent>
#include <QTimerEvent>

namespace
{

constexpr int HintSide = 32;

} // namespace

QTimerWidget::QTimerWidget(QWidget *parent)
    : QWidget(parent)
{
}

QSize QTimerWidget::sizeHint() const
{
    return {HintSide, HintSide};
}

void QTimerWidget::enable()
{
    m_ticking = true;
}

void QTimerWidget::disable()
{
    m_ticking = false;
}

void QTimerWidget::setEnabled(bool on)
{
    m_ticking = on;
}

void QTimerWidget::setDisabled(bool off)
{
    m_ticking = !off;
}

void QTimerWidget::setEmitID(int id)
{
    m_emitID = id;
}

void QTimerWidget::setSetID(int id)
{
    m_setID = id;
}

void QTimerWidget::setInterval(int msecs)
{
    m_interval = msecs;
}

void QTimerWidget::start()
{
    restart(false);
}

void QTimerWidget::startOnce()
{
    restart(true);
}

void QTimerWidget::stop()
{
    if (m_timerId < 0)
        return;
    killTimer(m_timerId);
    m_timerId = -1;
}

void QTimerWidget::restart(bool singleShot)
{
    stop();
    m_singleShot = singleShot;
    if (m_interval >= 0)
        m_timerId = startTimer(m_interval, Qt::CoarseTimer);
}

void QTimerWidget::enableID(int set_id)
{
    if (set_id == m_setID)
        enable();
}

void QTimerWidget::disableID(int set_id)
{
    if (set_id == m_setID)
        disable();
}

void QTimerWidget::setEnabledID(int set_id, bool on)
{
    if (set_id == m_setID)
        setEnabled(on);
}

void QTimerWidget::setDisabledID(int set_id, bool off)
{
    if (set_id == m_setID)
        setDisabled(off);
}

void QTimerWidget::setIntervalID(int set_id, int msecs)
{
    if (set_id == m_setID)
        setInterval(msecs);
}

void QTimerWidget::startID(int set_id)
{
    if (set_id == m_setID)
        start();
}

void QTimerWidget::startOnceID(int set_id)
{
    if (set_id == m_setID)
        startOnce();
}

void QTimerWidget::stopID(int set_id)
{
    if (set_id == m_setID)
        stop();
}

// The one shot ends after its signals: a start() in a handler makes the timer periodic and so
// survives, while a startOnce() there is ended by the same expiry.
void QTimerWidget::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_timerId) {
        QWidget::timerEvent(event);
        return;
    }

    const QPointer<QTimerWidget> alive(this);
    if (m_ticking) {
        emit tick();
        if (alive)
            emit tickID(m_emitID);
    }
    if (alive && m_singleShot)
        stop();
}

void QTimerWidget::showEvent(QShowEvent *event)
{
    event->ignore();
    if (!visibleAtRunTime)
        hide();
}

void QTimerWidget::paintEvent(QPaintEvent *event)
{
    QWidget::paintEvent(event);

    QPainter painter(this);
    const int half = qMin(height() / 2, width() / 2);
    painter.translate(width() / 2, height() / 2);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRect(-half, -half, 2 * half, 2 * half), image);
}
