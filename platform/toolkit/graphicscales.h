/// \file
/// The plot library's axes with our marks and labels. Not installed.
#pragma once

#include <graphicaxis.h>

class QwtScaleDraw;
class QwtScaleEngine;

QwtScaleDraw *newScaleDraw(const GraphicLabels &labels); ///< Writes the labels. The caller owns it.
QwtScaleEngine *newScaleEngine(bool isTime);             ///< Chooses where marks are. The caller owns it.
