/// \file
/// A timer that is placed on a panel like any widget.
#pragma once

#include <QImage>
#include <QWidget>
#include <kelwidgetsexport.h>

/// Periodic or one-shot timer that a panel wires by signals and slots. It shows a picture in a
/// designer and hides itself on a running panel. GUI thread only.
///
/// Its enable slots, setEnabled() among them, leave the widget's own enabled state alone: they only
/// silence the signals, while the timer keeps running.
class KEL_WIDGETS_EXPORT QTimerWidget : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int emitID READ emitID WRITE setEmitID)
    Q_PROPERTY(int setID READ setID WRITE setSetID)
    Q_PROPERTY(int interval READ interval WRITE setInterval)

public:
    explicit QTimerWidget(QWidget *parent = nullptr);

    int emitID() const { return m_emitID; }     ///< Carried by tickID().
    int setID() const { return m_setID; }       ///< Number that the numbered slots listen to.
    int interval() const { return m_interval; } ///< In milliseconds, of the next start.

    QSize sizeHint() const override;

    QImage image;                  ///< Picture that is shown; set by the host.
    bool visibleAtRunTime = false; ///< Set by the host to keep the widget from hiding itself.

public Q_SLOTS:
    void enable();
    void disable();
    void setEnabled(bool on);
    void setDisabled(bool off);
    void setEmitID(int id);
    void setSetID(int id);
    void setInterval(int msecs); ///< Takes effect at the next start; a negative one then starts nothing.
    void start();                ///< A full interval from now, and then again and again.
    void startOnce();            ///< Once, a full interval from now.
    void stop();

    /// Numbered twins: they act as the plain slot when the number is setID.
    void enableID(int set_id);
    void disableID(int set_id);
    void setEnabledID(int set_id, bool on);
    void setDisabledID(int set_id, bool off);
    void setIntervalID(int set_id, int msecs);
    void startID(int set_id);
    void startOnceID(int set_id);
    void stopID(int set_id);

Q_SIGNALS:
    void tick();
    void tickID(int id);

protected:
    void timerEvent(QTimerEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void restart(bool singleShot);

    bool m_singleShot = false;
    bool m_ticking = true;
    int m_emitID = -1;
    int m_setID = -1;
    int m_interval = 1000;
    int m_timerId = -1; // -1 when stopped.
};
