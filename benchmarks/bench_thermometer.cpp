// How long a thermometer paints a frame of its animation, beside the plot library's.
//
// Both are shown first and then paint into the same premultiplied image through QWidget::render, which
// does the same work around both paint events. Before every frame they get another value, so that nobody
// profits from the frame before; updates are off, so nothing is painted on the screen meanwhile. Ours
// moves as in an animation, through the level that it shows, colour included. The peer's pipe is thin at
// every size; rows of their own give it one as wide as our tube.
#include "comparison.h"
#include "subjects.h"

#include <kelthermometer.h>

#include <QApplication>
#include <QImage>
#include <qwt_thermo.h>

#include <memory>
#include <string>

namespace
{

constexpr int FramesPerRun = 24;

/// Values all over the scale, the same for everybody.
double valueOf(int frame)
{
    return (frame * 37) % 101 - 50.0;
}

template <typename Change>
Contender frames(const std::string &name, QWidget &widget, const QSize &size, Change change)
{
    keep(&widget);
    widget.setFixedSize(size);
    widget.show();
    widget.setUpdatesEnabled(false);
    const auto canvas = std::make_shared<QImage>(size, QImage::Format_ARGB32_Premultiplied);
    canvas->fill(Qt::white);
    return {name,
            [canvas, &widget, change] {
                for (int frame = 0; frame < FramesPerRun; ++frame) {
                    change(valueOf(frame));
                    widget.render(canvas.get(), QPoint(), QRegion(), QWidget::RenderFlags());
                }
            },
            FramesPerRun};
}

/// Both thermometers at one size; the peer's pipe is \a pipeWidth wide.
void compareThermometers(const QSize &size, const std::string &peerName, int pipeWidth)
{
    auto *ours = new KelThermometer;
    auto *peer = new QwtThermo;
    peer->setScale(-50.0, 50.0);
    peer->setPipeWidth(pipeWidth);
    compare("thermometer, " + std::to_string(size.width()) + " x " + std::to_string(size.height()),
            frames("KelThermometer", *ours, size, [ours](double value) { ours->setProperty("h__anim", value); }),
            frames(peerName, *peer, size, [peer](double value) { peer->setValue(value); }), 0.5);
}

} // namespace

void benchThermometer()
{
    constexpr int ThinPipe = 10; // as the peer has it at every size
    compareThermometers(QSize(120, 300), "QwtThermo", ThinPipe);
    compareThermometers(QSize(120, 300), "QwtThermo, our width", 27);
    compareThermometers(QSize(240, 600), "QwtThermo", ThinPipe);
    compareThermometers(QSize(240, 600), "QwtThermo, our width", 53);
    QApplication::processEvents();
}
