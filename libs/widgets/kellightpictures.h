/// \file
/// The pictures of a light's lamp.
#pragma once

#include <QImage>
#include <QSize>
#include <kellight.h>

/// What a lamp is painted of: the lamp without light, the lamp at full level, and two glows on top.
enum class LampStage { Off, Full, Warm, Halo };

/// The picture of \a stage at \a size pixels; null when \a size is empty. It is scaled from the artwork, which is there
/// in several sizes, since decoding a large one costs many times what a small lamp needs. All lamps of a panel share
/// decoded and scaled pictures, and what no lamp shows is not decoded. GUI thread only.
KEL_WIDGETS_EXPORT QImage lampPicture(KelLight::IconType type, LampStage stage, const QSize &size);

KEL_WIDGETS_EXPORT int decodedLampPictures(); ///< How many were decoded so far.
