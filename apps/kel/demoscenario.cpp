#include "demoscenario.h"

#include "command.h"
#include "screenshot.h"

#include <kelbutton.h>

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
constexpr int PollMs = 10;

/// Lets the event loop run for \a ms.
void pause(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

void sendMouse(QWidget &widget, QEvent::Type type)
{
    const QPointF where = QRectF(widget.rect()).center();
    const Qt::MouseButtons held = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
    QMouseEvent event(type, where, widget.mapToGlobal(where.toPoint()), Qt::LeftButton, held, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

} // namespace

DemoScenario::DemoScenario(QWidget &window, const TrafficLog &log)
    : m_window(window)
    , m_log(log)
{
}

void DemoScenario::play(const QString &picture)
{
    waitForReport(QStringLiteral("temperature"));
    pressAndWait(QStringLiteral("ceilingButton"));
    pressAndWait(QStringLiteral("dinnerButton"));
    waitUntilGreen(QStringLiteral("ceilingButton"));
    waitUntilGreen(QStringLiteral("dinnerButton"));
    saveScreenshot(m_window, picture);
    m_log.note(QStringLiteral("picture saved as %1").arg(picture));
}

void DemoScenario::waitForReport(const QString &label)
{
    const auto *shown = m_window.findChild<QLabel *>(label);
    if (!shown)
        throw CommandError(QStringLiteral("the demo's form has no label \"%1\"").arg(label));
    const QString before = shown->text();
    waitFor([shown, before] { return shown->text() != before; }, QStringLiteral("a report of the %1").arg(label));
    m_log.note(QStringLiteral("%1 shows %2").arg(label, shown->text()));
}

void DemoScenario::pressAndWait(const QString &name)
{
    KelButton &pressed = button(name);
    m_log.note(QStringLiteral("press %1").arg(name));
    sendMouse(pressed, QEvent::MouseButtonPress);
    pause(PressMs);
    sendMouse(pressed, QEvent::MouseButtonRelease);
    waitFor([&pressed] { return pressed.state() == KelButton::Yes; }, QStringLiteral("the answer to %1").arg(name));
    m_log.note(QStringLiteral("%1 has state Yes").arg(name));
}

void DemoScenario::waitUntilGreen(const QString &name)
{
    const KelButton &lit = button(name);
    waitFor([&lit] { return lit.h__currentColor() == lit.yesColor(); }, QStringLiteral("the colour of %1").arg(name));
    m_log.note(QStringLiteral("%1 is green (%2)").arg(name, lit.h__currentColor().name()));
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

KelButton &DemoScenario::button(const QString &name) const
{
    auto *found = m_window.findChild<KelButton *>(name);
    if (!found)
        throw CommandError(QStringLiteral("the demo's form has no button \"%1\"").arg(name));
    return *found;
}
