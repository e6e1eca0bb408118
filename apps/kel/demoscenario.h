/// \file
/// What the demo does when nobody is there to press its buttons.
#pragma once

#include "traffic/trafficlog.h"

#include <QString>
#include <QTime>
#include <QWidget>

#include <functional>

/// Plays an operator on the hall's panel: goes through its rooms, presses buttons with real mouse events and
/// waits until the answers of the devices have lit them. GUI thread only; runs the event loop meanwhile.
class DemoScenario
{
public:
    /// \a window is the hall's form, shown, with its devices connected.
    DemoScenario(QWidget &window, const TrafficLog &log);

    /// Plays it and saves a picture at \a picture. Throws a CommandError when an answer stays out or the
    /// picture cannot be saved.
    void play(const QString &picture);

private:
    void playHall();
    void playDiningRoom();
    void playGarden();
    void playClimate();

    void enter(int room);
    void waitForClock(const QString &clock, const QTime &time);
    void pickAndWait(const QString &clock, const QTime &time);
    void waitForText(const QString &label, const QString &text);
    void waitForThermometer(const QString &thermometer, const QString &label);
    void waitForCurves(const QString &plot);
    void pressAndWait(const QString &button);
    void waitUntilGreen(const QString &button);
    void slideAndWait(const QString &slider, double share, const QString &lamp);
    void switchAndWait(const QString &name, const QString &lamp);
    void waitFor(const std::function<bool()> &isDone, const QString &what);

    /// The widget \a name of the form. Throws a CommandError when there is none.
    template <typename Widget>
    Widget &part(const QString &name) const;

    QWidget &m_window;
    const TrafficLog &m_log;
};
