/// \file
/// Palettes that are equal, made one. Not installed.
#pragma once

#include <QPalette>
#include <kelwidgetsexport.h>

/// A palette that equals \a palette: the one that was given here last, if it is among the last few. Each widget with
/// colours of its own has a palette of its own, and styles that keep what they painted tell palettes apart by their
/// identity; with this one, what was painted for a widget serves all that have its colours. GUI thread only.
KEL_WIDGETS_EXPORT QPalette commonPalette(const QPalette &palette);
