/// \file
/// Sizes that follow the operator's screen and font. All of these run on the GUI thread.
#pragma once

#include <QSize>
#include <keltoolkitexport.h>

class QWidget;

/// Scale factor of the screen that shows \a widget (the primary screen for null): its logical dots
/// per inch over 96, so 1.0 at the reference resolution. 1.0 when there is no screen.
KEL_TOOLKIT_EXPORT double appScale(const QWidget *widget);

/// Height in pixels of the application font on the screen that shows \a widget (the primary screen
/// for null).
KEL_TOOLKIT_EXPORT int fontHeight(const QWidget *widget);

/// Preferred size of an icon beside text: a square of \a multiple font heights, rounded.
KEL_TOOLKIT_EXPORT QSize preferredIconSize(float multiple, const QWidget *widget);
