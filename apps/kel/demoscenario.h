/// \file
/// What the demo does when nobody is there to press its buttons.
#pragma once

#include "trafficlog.h"

#include <QString>
#include <QWidget>

#include <functional>

class KelButton;

/// Plays an operator on the hall's panel: presses buttons with real mouse events and waits until the
/// answers of the devices have lit them. GUI thread only; runs the event loop meanwhile.
class DemoScenario
{
public:
    /// \a window is the hall's form, shown, with its devices connected.
    DemoScenario(QWidget &window, const TrafficLog &log);

    /// Plays it and saves a picture at \a picture. Throws a CommandError when an answer stays out or the
    /// picture cannot be saved.
    void play(const QString &picture);

private:
    void waitForReport(const QString &label);
    void pressAndWait(const QString &button);
    void waitUntilGreen(const QString &button);
    void waitFor(const std::function<bool()> &isDone, const QString &what);
    KelButton &button(const QString &name) const;

    QWidget &m_window;
    const TrafficLog &m_log;
};
