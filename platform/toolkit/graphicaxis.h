/// \file
/// The marks and labels of a plot's axes. Not installed.
#pragma once

#include <QString>
#include <graphicrange.h>
#include <keltoolkitexport.h>

/// How the labels of one axis are written.
struct GraphicLabels {
    bool isTime = false;   ///< Values are seconds since 1970-01-01 UTC, shown as local time.
    int precisionStep = 0; ///< 0: each label as short as it can be; otherwise all with a multiple of it.
};

/// Decimals that tell multiples of \a step apart, rounded up to a multiple of \a precisionStep; at most 15.
KEL_TOOLKIT_EXPORT int labelDecimals(double step, int precisionStep);

/// \a value on an axis that goes to \a largest in steps of \a step. Without a \a precisionStep zeros at the
/// end are left out. Numbers with too many digits are written with a power of ten.
KEL_TOOLKIT_EXPORT QString numberLabel(double value, double step, double largest, int precisionStep);

/// The time \a seconds after 1970-01-01 UTC as local time, as exact as \a step asks; for the date, give 86400 or more.
KEL_TOOLKIT_EXPORT QString timeLabel(double seconds, double step);

/// \a value with as many digits as a reader of \a range can tell apart, or its date and time.
KEL_TOOLKIT_EXPORT QString readValue(double value, const GraphicRange &range, bool isTime);

/// What readValue() or a person wrote, not-a-number when it is neither a number nor a time.
KEL_TOOLKIT_EXPORT double writtenValue(const QString &text, bool isTime);

KEL_TOOLKIT_EXPORT bool isMidnight(double seconds); ///< In local time.
