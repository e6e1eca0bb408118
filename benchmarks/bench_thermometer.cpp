// How long a thermometer paints a frame of its animation, beside the plot library's.
//
// Both are shown first and then paint into the same premultiplied image through QWidget::render, which
// does the same work around both paint events. Before every frame they get another value, so that nobody
// profits from the frame before; updates are off, so nothing is painted on the screen meanwhile. Ours
// moves as in an animation, through the level that it shows, colour included.
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

/// Both thermometers at one size.
class Pair
{
public:
    explicit Pair(const QSize &size)
    {
        m_peer.setScale(-50.0, 50.0);
        const Contender ours =
            frames("KelThermometer", m_ours, size, [this](double value) { m_ours.setProperty("h__anim", value); });
        const Contender peer = frames("QwtThermo", m_peer, size, [this](double value) { m_peer.setValue(value); });
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

    const Pair usual(QSize(120, 300));
    const Pair large(QSize(240, 600));
    QApplication::processEvents();
    std::printf("Nanoseconds for %d frames.\n", FramesPerRun);
    return runComparisons(argc, argv);
}
