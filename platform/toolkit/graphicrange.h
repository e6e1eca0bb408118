/// \file
/// What a plot shows along one axis, and how it moves. Not installed.
#pragma once

#include <keltoolkitexport.h>

/// A range that can be drawn: finite, in order, and wide enough to tell its values apart.
struct GraphicRange {
    double from = 0.0;
    double to = 1.0;

    double width() const { return to - from; }
    bool operator==(const GraphicRange &other) const { return from == other.from && to == other.to; }
    bool operator!=(const GraphicRange &other) const { return !(*this == other); }
};

/// The range between two finite bounds in any order, widened about its middle where it is too narrow.
KEL_TOOLKIT_EXPORT GraphicRange drawableRange(double from, double to);

/// \a range with its width times \a factor, while \a fixed keeps its place.
KEL_TOOLKIT_EXPORT GraphicRange zoomedRange(const GraphicRange &range, double fixed, double factor);

/// \a range moved by \a distance.
KEL_TOOLKIT_EXPORT GraphicRange movedRange(const GraphicRange &range, double distance);

/// A range around \a from to \a to with a little space at both ends, whose bounds are round numbers.
KEL_TOOLKIT_EXPORT GraphicRange roundRange(double from, double to);
