#include "demoscenario.h"

#include "command.h"
#include "screenshot.h"

#include <kelbutton.h>
#include <kelgraphic.h>
#include <kellight.h>
#include <kelslider.h>
#include <kelswitch.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLabel>
#include <QMouseEvent>
#include <QTimer>

namespace
{

constexpr int AnswerTimeoutMs = 3000;
constexpr int PressMs = 100;
constexpr int FullByte = 254; // A lamp at 100 percent.
constexpr int PollMs = 10;

/// Lets the event loop run for \a ms.
void pause(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

void sendMouse(QWidget &widget, QEvent::Type type, const QPointF &where)
{
    const Qt::MouseButtons held = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
    QMouseEvent event(type, where, widget.mapToGlobal(where.toPoint()), Qt::LeftButton, held, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

/// Presses \a widget at \a where with the left button and lets go again.
void press(QWidget &widget, const QPointF &where)
{
    sendMouse(widget, QEvent::MouseButtonPress, where);
    pause(PressMs);
    sendMouse(widget, QEvent::MouseButtonRelease, where);
}

} // namespace

DemoScenario::DemoScenario(QWidget &window, const TrafficLog &log)
    : m_window(window)
    , m_log(log)
{
}

void DemoScenario::play(const QString &picture)
{
    waitForValue(QStringLiteral("temperature"));
    pressAndWait(QStringLiteral("ceilingButton"));
    slideAndWait(QStringLiteral("levelSlider"), 0.75, QStringLiteral("tableLight"));
    switchAndWait(QStringLiteral("porchSwitch"), QStringLiteral("porchLight"));
    pressAndWait(QStringLiteral("dinnerButton"));
    waitUntilGreen(QStringLiteral("ceilingButton"));
    waitUntilGreen(QStringLiteral("dinnerButton"));
    waitForCurves(QStringLiteral("historyPlot"));
    saveScreenshot(m_window, picture);
    m_log.note(QStringLiteral("picture saved as %1").arg(picture));
}

void DemoScenario::waitForValue(const QString &label)
{
    const auto &shown = part<QLabel>(label);
    const QString before = shown.text();
    waitFor([&shown, before] { return shown.text() != before; }, QStringLiteral("the %1").arg(label));
    m_log.note(QStringLiteral("%1 shows %2").arg(label, shown.text()));
}

void DemoScenario::waitForCurves(const QString &name)
{
    const auto &plot = part<KelGraphic>(name);
    for (int curve = 0; curve < plot.graphicsCount(); ++curve) {
        const QString title = plot.graphic(curve).name;
        waitFor([&plot, curve] { return plot.pointsCount(curve) > 1; }, QStringLiteral("the curve %1").arg(title));
        m_log.note(QStringLiteral("%1 draws %2").arg(name, title));
    }
}

void DemoScenario::pressAndWait(const QString &name)
{
    auto &pressed = part<KelButton>(name);
    m_log.note(QStringLiteral("press %1").arg(name));
    press(pressed, QRectF(pressed.rect()).center());
    waitFor([&pressed] { return pressed.state() == KelButton::Yes; }, QStringLiteral("the answer to %1").arg(name));
    m_log.note(QStringLiteral("%1 has state Yes").arg(name));
}

void DemoScenario::waitUntilGreen(const QString &name)
{
    const auto &lit = part<KelButton>(name);
    waitFor([&lit] { return lit.h__currentColor() == lit.yesColor(); }, QStringLiteral("the colour of %1").arg(name));
    m_log.note(QStringLiteral("%1 is green (%2)").arg(name, lit.h__currentColor().name()));
}

void DemoScenario::slideAndWait(const QString &name, double share, const QString &lamp)
{
    auto &slider = part<KelSlider>(name);
    auto &light = part<KelLight>(lamp);
    QWidget &bar = part<QWidget>(QStringLiteral("bar"));
    const int before = light.byteLevel();
    press(bar, QPointF(bar.width() * share, bar.height() / 2.0));
    m_log.note(QStringLiteral("%1 is moved to %2").arg(name).arg(slider.value()));
    const int wanted = qRound(slider.value() * FullByte / 100);
    waitFor([&light, wanted, before] { return wanted != before && light.byteLevel() == wanted; },
            QStringLiteral("the answer to %1").arg(name));
    waitFor([&light] { return light.h__anim() == light.level(); }, QStringLiteral("the glow of %1").arg(lamp));
    m_log.note(QStringLiteral("%1 glows at %2 of 254").arg(lamp).arg(light.byteLevel()));
}

void DemoScenario::switchAndWait(const QString &name, const QString &lamp)
{
    auto &pressed = part<KelSwitch>(name);
    auto &light = part<KelLight>(lamp);
    m_log.note(QStringLiteral("press %1").arg(name));
    press(pressed, QRectF(pressed.rect()).center());
    waitFor([&light] { return light.isOn(); }, QStringLiteral("the answer to %1").arg(name));
    waitFor([&light, &pressed] { return light.h__anim() == light.level() && pressed.h__anim() == 0.0F; },
            QStringLiteral("the glow of %1").arg(lamp));
    m_log.note(QStringLiteral("%1 is on").arg(lamp));
}

void DemoScenario::waitFor(const std::function<bool()> &isDone, const QString &what)
{
    QElapsedTimer timer;
    timer.start();
    while (!isDone()) {
        if (timer.elapsed() > AnswerTimeoutMs)
            throw CommandError(
                QStringLiteral("the demo waited %1 s in vain for %2").arg(AnswerTimeoutMs / 1000).arg(what));
        pause(PollMs);
    }
}

template <typename Widget>
Widget &DemoScenario::part(const QString &name) const
{
    auto *found = m_window.findChild<Widget *>(name);
    if (!found)
        throw CommandError(QStringLiteral("the demo's form has no \"%1\"").arg(name));
    return *found;
}
