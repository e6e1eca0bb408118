#include "colorarithmetic.h"

#include <cmath>

namespace
{

constexpr int ComponentMax = 255;

/// Truncated toward zero, or -1 when the result is no component.
int component(double value)
{
    const double truncated = std::trunc(value);
    return truncated >= 0.0 && truncated <= ComponentMax ? static_cast<int>(truncated) : -1;
}

template <typename Scale>
QColor scaled(const QColor &c, Scale scale)
{
    const int red = component(scale(c.red()));
    const int green = component(scale(c.green()));
    const int blue = component(scale(c.blue()));
    const int alpha = component(scale(c.alpha()));
    if (red < 0 || green < 0 || blue < 0 || alpha < 0)
        return {};
    return {red, green, blue, alpha};
}

} // namespace

QColor operator+(const QColor &a, const QColor &b)
{
    const auto sum = [](int x, int y) { return qMin(x + y, ComponentMax); };
    return {sum(a.red(), b.red()), sum(a.green(), b.green()), sum(a.blue(), b.blue()), sum(a.alpha(), b.alpha())};
}

QColor operator*(const QColor &c, double k)
{
    return std::isfinite(k) ? scaled(c, [k](int value) { return value * k; }) : QColor();
}

QColor operator/(const QColor &c, double k)
{
    return k != 0.0 ? scaled(c, [k](int value) { return value / k; }) : QColor();
}
