/// \file
/// Colours that keep a plot's curves apart. Not installed.
#pragma once

#include <QColor>
#include <QPalette>
#include <keltoolkitexport.h>

constexpr int GraphicColorsCount = 8;

/// The colour of the curve \a i on the plot of \a palette: one of eight that keep their distance from each
/// other and from the background, also for people who do not tell red, green or blue apart. The ninth is
/// the first again.
KEL_TOOLKIT_EXPORT QColor curveColor(int i, const QPalette &palette);

/// How the line of the curve \a i is broken, so that curves of the same colour differ.
KEL_TOOLKIT_EXPORT Qt::PenStyle curveStyle(int i);

/// \a color on a plot that does not take part: half way to the background.
KEL_TOOLKIT_EXPORT QColor fadedColor(const QColor &color, const QPalette &palette);

/// Lines behind the curves.
KEL_TOOLKIT_EXPORT QColor gridColor(const QPalette &palette);
