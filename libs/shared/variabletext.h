/// \file
/// The notation `name{duration}` of a variable: how long its value holds.
#pragma once

#include <QPair>
#include <QString>
#include <kelwidgetsexport.h>

/// Name and duration text of \a text: what stands before the first "{", and what stands between it and
/// the last "}". An empty duration is "inf"; a text without such braces is all name, its duration "inf".
KEL_WIDGETS_EXPORT QPair<QString, QString> splitVar(const QString &text);

/// \a name and, in braces, \a duration.
KEL_WIDGETS_EXPORT QString joinVar(const QString &name, const QString &duration);

/// Milliseconds of a duration text, a number and a unit: "1.5 h" gives 5400000. The unit's first
/// character counts: s, m (minutes), h, d, M (months of 30 days), y (12 such months); any other leaves
/// milliseconds. "inf" gives 0, which means unlimited; a text that is not two words gives 1. Negative
/// durations give 0, those beyond the range its largest number.
KEL_WIDGETS_EXPORT quint64 varDur(const QString &duration);
