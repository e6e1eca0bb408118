/// \file
/// The one way in which every widget animates a value that it shows.
#pragma once

#include <QPropertyAnimation>
#include <kelwidgetsexport.h>

/// Restarts \a animation from the value that its property shows now towards \a target, over
/// \a durationMs. What was running is dropped, never queued behind, so the picture does not jump.
/// The target is converted to the property's type; a negative duration counts as 0 (at once).
KEL_WIDGETS_EXPORT void animateTo(QPropertyAnimation &animation, const QVariant &target, int durationMs);

/// As above, over the duration that \a animation has.
KEL_WIDGETS_EXPORT void animateTo(QPropertyAnimation &animation, const QVariant &target);
