// How long our widgets paint, beside widgets and plain calls that put a like picture on a like canvas.
//
// To be fair to both sides: every widget is shown first, so that style, font and layout are settled;
// it then paints into the same premultiplied image through QWidget::render, without background and
// children, which does the same work around both paint events. A widget that shows a value gets
// another one before every frame, so that nobody profits from a picture of the frame before; updates are
// off, since some would paint themselves a second time on the screen at every new value. Peers
// that are plain drawPixmap calls stand in the paint event of an otherwise empty widget. What our
// slider bar does not have (a scale) its peer paints only in a row that says so.
#include "comparison.h"
#include "subjects.h"

#include <kelbutton.h>
#include <kellight.h>
#include <kelslider.h>
#include <kelswitch.h>

#include <QApplication>
#include <QDial>
#include <QImage>
#include <QPainter>
#include <QProgressBar>
#include <QSlider>
#include <QToolButton>
#include <qwt_slider.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <vector>

namespace
{

constexpr int FramesPerRun = 24;
const QSize BarSize(300, 40);
const QSize KnobSize(90, 32);
const QSize ButtonSize(120, 48);

/// Paints \a widget once into \a canvas.
void paint(QWidget &widget, QImage &canvas)
{
    widget.render(&canvas, QPoint(), QRegion(), QWidget::RenderFlags());
}

QImage canvasFor(const QSize &size)
{
    QImage canvas(size, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::white);
    return canvas;
}

/// Shows \a widget at \a size; it lives as long as the subject.
template <typename Widget>
Widget &shown(Widget *widget, const QSize &size)
{
    keep(widget);
    widget->setFixedSize(size);
    widget->show();
    widget->setUpdatesEnabled(false);
    return *widget;
}

/// A few frames of \a widget; before each, \a change(frame) gives it something else to show.
template <typename Change>
Contender frames(const std::string &name, QWidget &widget, Change change)
{
    const auto canvas = std::make_shared<QImage>(canvasFor(widget.size()));
    return {name,
            [canvas, &widget, change] {
                for (int frame = 0; frame < FramesPerRun; ++frame) {
                    change(frame);
                    paint(widget, *canvas);
                }
            },
            FramesPerRun};
}

Contender sameFrames(const std::string &name, QWidget &widget)
{
    return frames(name, widget, [](int) {});
}

/// Values all over the range 0..100, the same for everybody.
double valueOf(int frame)
{
    return (frame * 37) % 101;
}

/// The levels of a fade at 60 frames in a second: up, and down again.
double fadeLevelOf(int frame)
{
    constexpr int FadeFrames = 12;
    const int step = frame % (2 * FadeFrames);
    const double left = 1.0 - (step % FadeFrames + 1.0) / FadeFrames;
    const double share = 1.0 - left * left;
    return 100.0 * (step < FadeFrames ? share : 1.0 - share);
}

/// Draws pictures over each other, each with its opacity.
class Pictures : public QWidget
{
public:
    struct Picture {
        QPixmap pixmap;
        double opacity = 1.0;
    };

    QPixmap ring; ///< Lies below all others, at 0, 0.
    QPoint position;
    std::vector<Picture> pictures;

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        if (!ring.isNull())
            painter.drawPixmap(0, 0, ring);
        for (const Picture &picture : pictures) {
            if (picture.opacity <= 0.0)
                continue;
            painter.setOpacity(picture.opacity);
            painter.drawPixmap(position, picture.pixmap);
        }
    }
};

// The slider's bar

Contender ourBar(KelSlider &slider)
{
    auto *bar = slider.findChild<QWidget *>(QStringLiteral("bar"));
    bar->setFixedSize(BarSize);
    slider.show();
    slider.setMaximum(100.0);
    return frames("KelSlider bar", *bar, [&slider](int frame) { slider.setValue(valueOf(frame)); });
}

template <typename Peer>
Contender ranged(const std::string &name, Peer &peer)
{
    return frames(name, peer, [&peer](int frame) { peer.setValue(static_cast<int>(valueOf(frame))); });
}

Contender qwtSlider(const std::string &name, QwtSlider::ScalePosition position)
{
    auto *peer = new QwtSlider(Qt::Horizontal);
    peer->setScale(0.0, 100.0);
    peer->setScalePosition(position);
    shown(peer, BarSize);
    return frames(name, *peer, [peer](int frame) { peer->setValue(valueOf(frame)); });
}

void compareBars()
{
    auto &slider = *new KelSlider();
    shown(&slider, QSize(700, 100));
    const Contender ours = ourBar(slider);

    auto *groove = new QSlider(Qt::Horizontal);
    groove->setRange(0, 100);
    compare("slider bar", ours, ranged("QSlider", shown(groove, BarSize)));

    auto *progress = new QProgressBar();
    progress->setTextVisible(false);
    compare("slider bar", ours, ranged("QProgressBar, no text", shown(progress, BarSize)));
    compare("slider bar", ours, qwtSlider("QwtSlider, no scale", QwtSlider::NoScale), 1.0);
    compare("slider bar", ours, qwtSlider("QwtSlider with scale", QwtSlider::TrailingScale), 1.0);

    auto &captioned = *new KelSlider();
    shown(&captioned, QSize(700, 100));
    captioned.setTitle(QStringLiteral("%v %"));
    captioned.setTitleInsideBar(true);
    compare("slider bar with caption", ourBar(captioned), ranged("QProgressBar", shown(new QProgressBar(), BarSize)));
}

// The light

QPixmap stagePicture(const char *stage, const QSize &size)
{
    const QImage image(QStringLiteral(":/icons/light_bulb_%1.png").arg(QLatin1String(stage)));
    return QPixmap::fromImage(image.convertToFormat(QImage::Format_ARGB32_Premultiplied)
                                  .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

/// The side of the lamp's picture in a light of the side \a side with a ring of \a barSize percent.
int pictureSide(int side, double barSize)
{
    const double radius = side * 0.5;
    const double inner = (radius - std::max(1.0, radius / 80.0)) * (1.0 - barSize / 100.0);
    return static_cast<int>(2.0 * inner / 1.2);
}

/// The lamp's pictures alone, with the opacities that they have at a level of \a percent.
std::array<double, 4> opacitiesAt(double percent)
{
    const double halo = (percent - 70.0) / 30.0;
    return {1.0, std::min(1.0, std::pow(percent / 75.0, 0.5)), std::min(1.0, std::pow(percent / 20.0, 0.4)),
            halo > 0.0 ? std::pow(halo, 1.5) : 0.0};
}

Contender lampPictures(const std::string &name, int side, double barSize, const QPixmap &ring = QPixmap())
{
    auto &widget = shown(new Pictures(), QSize(side, side));
    const int inner = pictureSide(side, barSize);
    widget.position = QPoint((side - inner) / 2, (side - inner) / 2);
    widget.ring = ring;
    for (const char *stage : {"0", "100", "w", "h"})
        widget.pictures.push_back({stagePicture(stage, QSize(inner, inner)), 1.0});
    return frames(name, widget, [&widget](int frame) {
        const std::array<double, 4> opacities = opacitiesAt(fadeLevelOf(frame));
        for (std::size_t i = 0; i < opacities.size(); ++i)
            widget.pictures[i].opacity = opacities[i];
    });
}

/// A light in the middle of a fade; without an event loop it stays there.
Contender fadingLight(const std::string &name, KelLight &light)
{
    light.setLevel(light.level() > 50.0 ? 0.0 : 100.0);
    return frames(name, light, [&light](int frame) { light.setProperty("h__anim", fadeLevelOf(frame)); });
}

/// What \a light shows, on nothing.
QPixmap pictureOf(KelLight &light)
{
    QImage picture = canvasFor(light.size());
    picture.fill(Qt::transparent);
    paint(light, picture);
    return QPixmap::fromImage(picture);
}

void compareSteadyLight(int side)
{
    auto &light = shown(new KelLight(), QSize(side, side));
    light.setProperty("h__anim", 60.0);
    auto &peer = shown(new Pictures(), light.size());
    peer.pictures.push_back({pictureOf(light), 1.0});
    compare("steady light, " + std::to_string(side) + " px", sameFrames("KelLight", light),
            sameFrames("one drawPixmap", peer), 1.3);
}

// The goal counts the lamp's pictures, so it belongs to the light that shows little else. What the
// dimmer's ring adds, as a picture and by what moves in it, stands in rows of its own.
void compareFadingLight(int side)
{
    const std::string job = "light in fade, " + std::to_string(side) + " px";
    auto &binary = shown(new KelLight(), QSize(side, side));
    binary.setBinary(true);
    compare(job, fadingLight("KelLight, binary", binary), lampPictures("lamp's pictures", side, 1.25), 1.2);

    auto &light = shown(new KelLight(), QSize(side, side));
    const double bar = light.barSize();
    const Contender ours = fadingLight("KelLight with ring", light);
    compare(job, ours, lampPictures("lamp's pictures", side, bar));
    compare(job, ours, lampPictures("pictures and a ring's", side, bar, pictureOf(light)));
}

// The others

void compareSwitch()
{
    auto &ours = shown(new KelSwitch(), KnobSize);
    const Contender moving = frames("KelSwitch", ours, [&ours](int frame) {
        ours.setProperty("h__anim", valueOf(frame) / 100.0);
        ours.setProperty("h__anim_s", valueOf(frame) / 100.0);
    });
    auto *slider = new QSlider(Qt::Horizontal);
    slider->setRange(0, 100);
    compare("switch", moving, ranged("QSlider", shown(slider, KnobSize)));

    auto *dial = new QDial();
    dial->setRange(0, 100);
    compare("switch", moving, ranged("QDial", shown(dial, KnobSize)));
}

void compareButton()
{
    auto *ours = new KelButton();
    ours->setText(QStringLiteral("Pump"));
    auto *peer = new QToolButton();
    peer->setText(QStringLiteral("Pump"));
    compare("button", sameFrames("KelButton", shown(ours, ButtonSize)),
            sameFrames("QToolButton", shown(peer, ButtonSize)));
}

} // namespace

void benchPaint()
{
    compareBars();
    for (const int side : {120, 240})
        compareSteadyLight(side);
    compareSwitch();
    compareButton();
    QApplication::processEvents();
    // Last, since from here on no event loop runs that would end a fade.
    for (const int side : {120, 240})
        compareFadingLight(side);
}
