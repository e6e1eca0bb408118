// How long one frame of a drag lasts, beside tab bars that paint their tabs.
//
// A frame is what the operator sees: the pointer moves by some pixels, and the window brings itself up to
// date before the next frame. Every bar shows the same tabs in a window that is really shown (offscreen).
// "Full repaint" asks a bar for all its tabs, once with all of them in sight and once with as many as our
// widget shows; "dragged" moves a plain bar inside a window of our widget's width, as we do.
#include "comparison.h"
#include "subjects.h"

#include <keltabwidget.h>

#include <QApplication>
#include <QEvent>
#include <QMouseEvent>
#include <QTabBar>

namespace
{

constexpr int TabsCount = 20;
constexpr int FramesPerRun = 24;
constexpr int StepPixels = 7;
const QSize PanelSize(480, 120);

/// Shows \a window until the end of the subject.
template <typename Widget>
Widget &shown(Widget *window, const QSize &size)
{
    keep(window);
    window->resize(size);
    window->show();
    QApplication::processEvents();
    return *window;
}

QString tabName(int index)
{
    return QStringLiteral("Room %1").arg(index + 1);
}

void addTabs(QTabBar &bar)
{
    bar.setUsesScrollButtons(false);
    for (int i = 0; i < TabsCount; ++i)
        bar.addTab(tabName(i));
}

/// Paints what is due in \a window, as the screen's next refresh would.
void bringUpToDate(QWidget &window)
{
    QEvent request(QEvent::UpdateRequest);
    QApplication::sendEvent(&window, &request);
}

void sendMouse(QWidget &target, QEvent::Type type, const QPoint &position)
{
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, position, target.mapToGlobal(position), button, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &event);
}

/// Forth in the first half of a run, back in the second.
int stepOf(int frame)
{
    return frame < FramesPerRun / 2 ? -StepPixels : StepPixels;
}

Contender ourDrag()
{
    auto *panel = new KelTabWidget();
    for (int i = 0; i < TabsCount; ++i)
        panel->addTab(new QWidget(), tabName(i));
    shown(panel, PanelSize);
    QTabBar &bar = *panel->tabBar();
    const QPoint grip(200, bar.height() / 2);
    sendMouse(bar, QEvent::MouseButtonPress, grip);
    return {"KelTabWidget",
            [panel, &bar, grip] {
                for (int frame = 0; frame < FramesPerRun; ++frame) {
                    sendMouse(bar, QEvent::MouseMove, grip + QPoint(stepOf(frame), 0));
                    bringUpToDate(*panel);
                }
            },
            FramesPerRun};
}

Contender fullRepaint(const std::string &name, QTabBar &bar)
{
    return {name,
            [&bar] {
                for (int frame = 0; frame < FramesPerRun; ++frame)
                    bar.repaint();
            },
            FramesPerRun};
}

QTabBar &wholeBar()
{
    auto *bar = new QTabBar();
    addTabs(*bar);
    return shown(bar, bar->sizeHint());
}

QTabBar &barInNarrowWindow(QWidget &window)
{
    auto *bar = new QTabBar(&window);
    addTabs(*bar);
    bar->resize(bar->sizeHint());
    shown(&window, PanelSize);
    return *bar;
}

Contender plainDrag()
{
    auto *window = new QWidget();
    QTabBar &bar = barInNarrowWindow(*window);
    return {"QTabBar, moved",
            [window, &bar] {
                for (int frame = 0; frame < FramesPerRun; ++frame) {
                    bar.move(bar.x() + stepOf(frame), bar.y());
                    bringUpToDate(*window);
                }
            },
            FramesPerRun};
}

} // namespace

void benchTabs()
{
    const Contender ours = ourDrag();
    constexpr double Goal = 0.25;
    compare("drag frame, 20 tabs", ours, fullRepaint("QTabBar, full repaint", wholeBar()), Goal);
    compare("drag frame, 20 tabs", ours, fullRepaint("QTabBar, part seen", barInNarrowWindow(*new QWidget())), Goal);
    compare("drag frame, 20 tabs", ours, plainDrag(), Goal);
}
