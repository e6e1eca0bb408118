/// \file
/// How the gallery shows pages behind tabs.
#pragma once

#include "variants.h"

/// The looks of a KelTabWidget.
QVector<GalleryVariant> tabVariants();
