// How long a frame of a clock's animation lasts, beside the plot library's analog clock.
//
// A frame is what the operator sees: the hands get another place, and the window brings what is due on its
// screen (offscreen) up to date; of ours that is the square in which the hands turn. The rows named "whole"
// render all of a widget into the same premultiplied image instead. Before every frame the time is another
// one, so that nobody profits from the frame before. A face is as large as the clock beside it. The rows
// named "both faces" give our widget and its peer the same size, so ours paints twice as much.
#include "comparison.h"
#include "subjects.h"

#include <kelclock.h>

#include <QApplication>
#include <QImage>
#include <QLayout>
#include <QTime>
#include <qwt_analog_clock.h>

#include <memory>
#include <optional>
#include <string>

namespace
{

constexpr int FramesPerRun = 24;
constexpr double Goal = 0.25;

/// Shows \a widget at \a size; it lives as long as the subject.
template <typename Widget>
Widget &shown(Widget *widget, const QSize &size)
{
    keep(widget);
    widget->setFixedSize(size);
    widget->show();
    QApplication::processEvents();
    return *widget;
}

/// A few frames of \a widget; before each, \a change(frame) gives it something else to show.
template <typename Change>
Contender frames(const std::string &name, QWidget &widget, Change change)
{
    return {name,
            [&widget, change] {
                for (int frame = 0; frame < FramesPerRun; ++frame) {
                    change(frame);
                    QEvent request(QEvent::UpdateRequest); // as the screen's next refresh
                    QApplication::sendEvent(&widget, &request);
                }
            },
            FramesPerRun};
}

template <typename Change>
Contender wholeFrames(const std::string &name, QWidget &widget, Change change)
{
    const auto canvas = std::make_shared<QImage>(widget.size(), QImage::Format_ARGB32_Premultiplied);
    canvas->fill(Qt::white);
    return {name,
            [canvas, &widget, change] {
                for (int frame = 0; frame < FramesPerRun; ++frame) {
                    change(frame);
                    widget.render(canvas.get(), QPoint(), QRegion(), QWidget::DrawChildren);
                }
            },
            FramesPerRun};
}

/// Times all over the day, the same for everybody.
QTime timeOf(int frame)
{
    return QTime(0, 0).addSecs((frame * 37 + 1) % 720 * 60);
}

/// The hands of \a clock at the time of \a frame, as an animation places them: the numbers stay.
void turnHands(KelClock &clock, int frame)
{
    constexpr float FullTurn = 6.2831853F;
    const QTime time = timeOf(frame);
    clock.setProperty("h__anim0", FullTurn * static_cast<float>(time.minute()) / 60.0F);
    clock.setProperty("h__anim1", FullTurn * static_cast<float>(time.hour()) / 12.0F);
}

KelClock &ourClock(const QSize &size)
{
    auto &clock = shown(new KelClock(), size);
    clock.setTime(QTime(14, 30));
    return clock;
}

std::string jobName(const std::string &what, const QSize &size)
{
    return what + ", " + std::to_string(size.width()) + " x " + std::to_string(size.height());
}

/// Adds both ways to paint a frame of \a clock.
void compareAnimation(const std::string &what, KelClock &clock, QwtAnalogClock &peer, std::optional<double> goal)
{
    const auto turn = [&clock](int frame) { turnHands(clock, frame); };
    const auto turnPeer = [&peer](int frame) { peer.setTime(timeOf(frame)); };
    const QSize size = clock.size();
    compare(jobName(what, size), frames("KelClock", clock, turn), frames("QwtAnalogClock", peer, turnPeer), goal);
    compare(jobName(what + ", whole", size), wholeFrames("KelClock", clock, turn),
            wholeFrames("QwtAnalogClock", peer, turnPeer), goal);
}

void compareFaces(int side)
{
    KelClock &clock = ourClock(QSize(side, side));
    clock.layout()->itemAt(1)->widget()->hide();
    QApplication::processEvents();
    compareAnimation("one face", clock, shown(new QwtAnalogClock(), clock.size()), Goal);
}

void compareClocks(int side)
{
    const QSize size(2 * side, side);
    auto &peer = shown(new QwtAnalogClock(), size);
    compareAnimation("both faces", ourClock(size), peer, {});

    // A number that is picked costs a new picture of its face, once. Another clock, since the next frame of
    // the one above would have to pay for it.
    KelClock &picked = ourClock(size);
    compare(jobName("both faces, new", size),
            frames("KelClock", picked, [&picked](int frame) { picked.setTime(timeOf(frame)); }),
            frames("QwtAnalogClock", peer, [&peer](int frame) { peer.setTime(timeOf(frame)); }));
}

} // namespace

void benchClock()
{
    for (const int side : {120, 200, 400})
        compareFaces(side);
    for (const int side : {120, 300})
        compareClocks(side);
}
