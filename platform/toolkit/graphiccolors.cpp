#include "graphiccolors.h"

#include <array>

namespace
{

using Colors = std::array<QRgb, GraphicColorsCount>;

// Found by a search for the greatest smallest distance (28 steps of colour difference or more between any
// two, as seen by people with full, red-, green- and blue-blind sight) among colours whose contrast with
// the background is 3 to 1 or more.
constexpr Colors OnLight = {0xff3178ff, 0xffd56c0d, 0xff1e9b67, 0xff4b0fa2,
                            0xff8f4117, 0xff0b4880, 0xff977c9f, 0xff3a2438};
constexpr Colors OnDark = {0xff5f70fe, 0xffdc8a17, 0xff3eb26a, 0xfffdcdff,
                           0xffdef60e, 0xffa695ea, 0xffae809c, 0xff99fdc8};

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Base).lightnessF() < 0.5;
}

QColor between(const QColor &a, const QColor &b, double share)
{
    const auto mixed = [share](int from, int to) { return qRound(from + (to - from) * share); };
    return {mixed(a.red(), b.red()), mixed(a.green(), b.green()), mixed(a.blue(), b.blue()), a.alpha()};
}

} // namespace

QColor curveColor(int i, const QPalette &palette)
{
    const Colors &colors = isDark(palette) ? OnDark : OnLight;
    return QColor(colors[static_cast<std::size_t>(i) % colors.size()]);
}

Qt::PenStyle curveStyle(int i)
{
    constexpr std::array<Qt::PenStyle, 4> styles = {Qt::SolidLine, Qt::DashLine, Qt::DotLine, Qt::DashDotLine};
    return styles[static_cast<std::size_t>(i / GraphicColorsCount) % styles.size()];
}

QColor fadedColor(const QColor &color, const QPalette &palette)
{
    return between(color, palette.color(QPalette::Base), 0.6);
}

QColor gridColor(const QPalette &palette)
{
    return between(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.15);
}
