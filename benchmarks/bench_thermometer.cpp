// How long a thermometer paints a frame of its animation, beside the plot library's.
//
// Both are shown first and then paint into the same premultiplied image through QWidget::render, which
// does the same work around both paint events. Before every frame they get another value, so that nobody
// profits from the frame before; updates are off, so nothing is painted on the screen meanwhile. Ours
// moves as in an animation, through the level that it shows, colour included. The peer's pipe is thin at
// every size; rows of their own give it one as wide as our tube.
#include "comparison.h"

#include <kelthermometer.h>

#include <QApplication>
#include <QImage>
#include <qwt_thermo.h>

#include <cstdio>
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
    widget.setFixedSize(size);
    widget.show();
    widget.setUpdatesEnabled(false);
    const auto canvas = std::make_shared<QImage>(size, QImage::Format_ARGB32_Premultiplied);
    canvas->fill(Qt::white);
    return {name, [canvas, &widget, change] {
                for (int frame = 0; frame < FramesPerRun; ++frame) {
                    change(valueOf(frame));
                    widget.render(canvas.get(), QPoint(), QRegion(), QWidget::RenderFlags());
                }
            }};
}

/// Both thermometers at one size; the peer's pipe is \a pipeWidth wide.
class Pair
{
public:
    Pair(const QSize &size, const std::string &peerName, int pipeWidth)
    {
        m_peer.setScale(-50.0, 50.0);
        m_peer.setPipeWidth(pipeWidth);
        const Contender ours =
            frames("KelThermometer", m_ours, size, [this](double value) { m_ours.setProperty("h__anim", value); });
        const Contender peer = frames(peerName, m_peer, size, [this](double value) { m_peer.setValue(value); });
        compare("thermometer, " + std::to_string(size.width()) + " x " + std::to_string(size.height()), ours, peer,
                0.5);
    }

private:
    KelThermometer m_ours;
    QwtThermo m_peer;
};

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen"); // the pictures are for nobody's eyes
    const QApplication application(argc, argv);

    constexpr int ThinPipe = 10; // as the peer has it at every size
    const Pair usual(QSize(120, 300), "QwtThermo", ThinPipe);
    const Pair usualWide(QSize(120, 300), "QwtThermo, our width", 27);
    const Pair large(QSize(240, 600), "QwtThermo", ThinPipe);
    const Pair largeWide(QSize(240, 600), "QwtThermo, our width", 53);
    QApplication::processEvents();
    std::printf("Nanoseconds for %d frames.\n", FramesPerRun);
    return runComparisons(argc, argv);
}
