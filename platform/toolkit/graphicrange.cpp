#include "graphicrange.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double Largest = 1e300;        ///< Sums of a few such numbers are still numbers.
constexpr double SmallestShare = 1e-12;  ///< Of the greatest value; a double keeps 16 digits.
constexpr double SmallestWidth = 1e-290; ///< Its inverse is still a number.
constexpr double Space = 0.02;           ///< Between the points and the picture's edge.
constexpr double Steps = 8.0;            ///< Round numbers that a range holds.

/// The smallest of 1, 2, 5, 10, 20, 50 … and 0.5, 0.2 … that is not below \a least.
double roundStep(double least)
{
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    for (const double digit : {1.0, 2.0, 5.0}) {
        if (digit * power >= least)
            return digit * power;
    }
    return 10.0 * power;
}

} // namespace

GraphicRange drawableRange(double from, double to)
{
    const double least = std::clamp(std::min(from, to), -Largest, Largest);
    const double most = std::clamp(std::max(from, to), -Largest, Largest);
    const double middle = least / 2.0 + most / 2.0;
    const double smallest = std::max(std::max(std::abs(least), std::abs(most)) * SmallestShare, SmallestWidth);
    if (most - least >= smallest)
        return {least, most};
    return {middle - smallest / 2.0, middle + smallest / 2.0};
}

GraphicRange zoomedRange(const GraphicRange &range, double fixed, double factor)
{
    return drawableRange(fixed - (fixed - range.from) * factor, fixed + (range.to - fixed) * factor);
}

GraphicRange movedRange(const GraphicRange &range, double distance)
{
    const double from = range.from + distance;
    const double to = range.to + distance;
    return std::max(std::abs(from), std::abs(to)) > Largest ? range : drawableRange(from, to);
}

GraphicRange roundRange(double from, double to)
{
    const double width = to - from;
    // All values the same: something to see around them.
    if (!(width > std::max(std::abs(from), std::abs(to)) * SmallestShare)) {
        const double around = from == 0.0 ? 1.0 : std::abs(from) * 0.1;
        return drawableRange(from - around, to + around);
    }
    const double least = from - width * Space;
    const double most = to + width * Space;
    const double step = roundStep((most - least) / Steps);
    const double lower = std::floor(least / step) * step;
    const double upper = std::ceil(most / step) * step;
    return std::isfinite(lower) && std::isfinite(upper) ? drawableRange(lower, upper) : drawableRange(from, to);
}
