// What a panel full of moving widgets costs: the processor's time for painting sixty frames in a second,
// beside that second.
#include "comparison.h"
#include "subjects.h"

#include <kelbutton.h>
#include <kelclock.h>
#include <kellight.h>
#include <kelslider.h>
#include <kelswitch.h>
#include <kelthermometer.h>

#include <QApplication>
#include <QColor>
#include <QEvent>

#include <functional>
#include <time.h>

namespace
{

constexpr int Rows = 6;
constexpr int Columns = 10;
constexpr int FramesPerSecond = 60;
constexpr int Seconds = 5;
constexpr double ShareOfCore = 0.1;
constexpr QSize PanelSize(1280, 800);

using Move = std::function<void(double share)>; ///< Puts a widget where an animation has it, from 0 to 1.

double threadTimeNs()
{
    timespec now{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e9 + double(now.tv_nsec);
}

template <typename Widget>
Widget *placed(Widget *widget, int row, int column)
{
    const QSize cell(PanelSize.width() / Columns, PanelSize.height() / Rows);
    const int margin = 4;
    widget->setGeometry(
        QRect(QPoint(column * cell.width(), row * cell.height()), cell).adjusted(margin, margin, -margin, -margin));
    return widget;
}

/// A row of each widget that animates.
std::vector<Move> fill(QWidget &panel)
{
    std::vector<Move> moves;
    for (int column = 0; column < Columns; ++column) {
        auto *button = placed(new KelButton(&panel), 0, column);
        button->setText(QStringLiteral("Pump %1").arg(column));
        moves.push_back([button](double share) {
            button->setProperty("h__currentColor", QColor::fromHsv(int(share * 120.0), 160, 220));
        });
        auto *light = placed(new KelLight(&panel), 1, column);
        moves.push_back([light](double share) { light->setProperty("h__anim", share * 100.0); });
        auto *knob = placed(new KelSwitch(&panel), 2, column);
        moves.push_back([knob](double share) {
            knob->setProperty("h__anim", share);
            knob->setProperty("h__anim_s", share);
        });
        auto *slider = placed(new KelSlider(&panel), 3, column);
        moves.push_back([slider](double share) { slider->setValue(share * slider->maximum()); });
        auto *clock = placed(new KelClock(&panel), 4, column);
        moves.push_back([clock](double share) {
            clock->setProperty("h__anim0", 6.28 * share);
            clock->setProperty("h__anim1", 0.52 * share);
        });
        auto *thermometer = placed(new KelThermometer(&panel), 5, column);
        moves.push_back([thermometer](double share) { thermometer->setProperty("h__anim", share * 100.0 - 50.0); });
    }
    return moves;
}

/// Up and down again, once in a second.
double shareOf(int frame)
{
    constexpr int Half = FramesPerSecond / 2;
    const int step = frame % FramesPerSecond;
    return double(step < Half ? step : FramesPerSecond - step) / Half;
}

/// Everything that a second of animation costs, all widgets moving in each frame.
double secondNs(QWidget &panel, const std::vector<Move> &moves)
{
    const double begin = threadTimeNs();
    for (int frame = 0; frame < FramesPerSecond; ++frame) {
        for (const Move &move : moves)
            move(shareOf(frame));
        QEvent request(QEvent::UpdateRequest); // as the screen's next refresh
        QApplication::sendEvent(&panel, &request);
    }
    return threadTimeNs() - begin;
}

} // namespace

void benchAnimation()
{
    constexpr double SecondNs = 1e9;
    auto *panel = new QWidget;
    keep(panel);
    panel->setFixedSize(PanelSize);
    const std::vector<Move> moves = fill(*panel);
    panel->show();
    QApplication::processEvents();

    std::vector<double> seconds;
    for (int i = 0; i < Seconds; ++i)
        seconds.push_back(secondNs(*panel, moves));
    report({"60 widgets, 60 frames a second", "processor time", median(seconds), "a second of one core", SecondNs,
            ShareOfCore});
}
