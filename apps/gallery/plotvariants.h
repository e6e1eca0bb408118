/// \file
/// How the gallery shows a plot.
#pragma once

#include "variants.h"

/// The looks of a KelGraphic.
QVector<GalleryVariant> plotVariants();
