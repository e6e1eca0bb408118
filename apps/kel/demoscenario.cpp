#include "demoscenario.h"

#include "command.h"
#include "screenshot.h"

#include <kelbutton.h>
#include <kelclock.h>
#include <kelgraphic.h>
#include <kellight.h>
#include <kelslider.h>
#include <kelswitch.h>
#include <keltabwidget.h>
#include <kelthermometer.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QTabBar>
#include <QTimer>

#include <algorithm>
#include <cmath>

namespace
{

constexpr int AnswerTimeoutMs = 3000;
constexpr int PressMs = 60;
constexpr int FullByte = 254; // A lamp at 100 percent.
constexpr int PollMs = 10;

// The rooms, as their tabs stand.
constexpr int Hall = 0;
constexpr int DiningRoom = 1;
constexpr int Garden = 2;
constexpr int Climate = 3;

// Where a clock's rings are, from the centre of a face to its edge.
constexpr double OuterRing = 0.79;
constexpr double InnerRing = 0.47;

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

/// A point on a clock's \a face at \a turn of its way round and \a share of the way from its centre.
QPointF pointOnFace(const QWidget &face, double turn, double share)
{
    const double angle = turn * 2.0 * std::acos(-1.0);
    const double radius = share * std::min(face.width(), face.height()) / 2.0;
    return QRectF(face.rect()).center() + QPointF(radius * std::sin(angle), -radius * std::cos(angle));
}

} // namespace

DemoScenario::DemoScenario(QWidget &window, const TrafficLog &log)
    : m_window(window)
    , m_log(log)
{
}

void DemoScenario::play(const QString &picture)
{
    playHall();
    playGarden();
    playDiningRoom();
    playClimate();
    enter(Hall);
    waitUntilGreen(QStringLiteral("ceilingButton"));
    saveScreenshot(m_window, picture);
    m_log.note(QStringLiteral("picture saved as %1").arg(picture));
}

void DemoScenario::playHall()
{
    pressAndWait(QStringLiteral("ceilingButton"));
    switchAndWait(QStringLiteral("porchSwitch"), QStringLiteral("porchLight"));
}

void DemoScenario::playDiningRoom()
{
    enter(DiningRoom);
    slideAndWait(QStringLiteral("levelSlider"), 0.75, QStringLiteral("tableLight"));
    pressAndWait(QStringLiteral("dinnerButton"));
    waitUntilGreen(QStringLiteral("dinnerButton"));
}

void DemoScenario::playGarden()
{
    enter(Garden);
    waitForClock(QStringLiteral("pathClock"), QTime(20, 45));
    pickAndWait(QStringLiteral("pathClock"), QTime(7, 30));
    waitForText(QStringLiteral("pathHour"), QStringLiteral("7"));
    waitForText(QStringLiteral("pathMinute"), QStringLiteral("30"));
}

void DemoScenario::playClimate()
{
    enter(Climate);
    waitForThermometer(QStringLiteral("thermometer"), QStringLiteral("temperature"));
    waitForCurves(QStringLiteral("historyPlot"));
}

void DemoScenario::enter(int room)
{
    auto &rooms = part<KelTabWidget>(QStringLiteral("rooms"));
    QTabBar &bar = *rooms.tabBar();
    press(bar, QRectF(bar.tabRect(room)).center());
    waitFor([&rooms, room] { return rooms.currentIndex() == room; },
            QStringLiteral("the room %1").arg(rooms.tabText(room)));
    m_log.note(QStringLiteral("rooms shows %1").arg(rooms.tabText(room)));
}

void DemoScenario::waitForClock(const QString &name, const QTime &time)
{
    const auto &clock = part<KelClock>(name);
    waitFor([&clock, time] { return clock.time() == time; }, QStringLiteral("the time of %1").arg(name));
    m_log.note(QStringLiteral("%1 shows %2").arg(name, time.toString(QStringLiteral("HH:mm"))));
}

void DemoScenario::pickAndWait(const QString &name, const QTime &time)
{
    const auto &clock = part<KelClock>(name);
    QWidget &hours = *clock.layout()->itemAt(0)->widget();
    QWidget &minutes = *clock.layout()->itemAt(1)->widget();
    const double ring = time.hour() >= 1 && time.hour() <= 12 ? InnerRing : OuterRing;
    press(hours, pointOnFace(hours, time.hour() / 12.0, ring));
    press(minutes, pointOnFace(minutes, time.minute() / 60.0, OuterRing));
    m_log.note(QStringLiteral("%1 is tapped").arg(name));
    waitForClock(name, time);
}

void DemoScenario::waitForText(const QString &label, const QString &text)
{
    const auto &shown = part<QLabel>(label);
    waitFor([&shown, text] { return shown.text() == text; }, QStringLiteral("the answer at %1").arg(label));
    m_log.note(QStringLiteral("%1 shows %2").arg(label, text));
}

void DemoScenario::waitForThermometer(const QString &name, const QString &label)
{
    const auto &thermometer = part<KelThermometer>(name);
    const auto &shown = part<QLabel>(label);
    const auto hasSettled = [&thermometer, &shown] {
        bool isNumber = false;
        const double degrees = shown.text().toDouble(&isNumber);
        return isNumber && thermometer.value() == degrees && thermometer.h__anim() == float(degrees);
    };
    waitFor(hasSettled, QStringLiteral("the %1").arg(label));
    m_log.note(QStringLiteral("%1 shows %2").arg(label, shown.text()));
    m_log.note(QStringLiteral("%1 shows %2").arg(name).arg(thermometer.value()));
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
    QWidget &bar = *slider.findChild<QWidget *>(QStringLiteral("bar"));
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
