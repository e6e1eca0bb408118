/// \file
/// Pages of widgets, painted into pictures.
#pragma once

#include "variants.h"

#include <QImage>
#include <widgetlist.h>

#include <stdexcept>

/// A widget that painted nothing where its picture should be; the text names it.
class GalleryError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Every one of the \a variants of \a info at three sizes, and disabled at the usual one, on each palette.
/// Waits until nothing moves any more. Throws a GalleryError when one of them stays empty.
QImage galleryPage(const KelWidgetInfo &info, const QVector<GalleryVariant> &variants);

/// The first variant of every widget of \a list at its usual size, on each palette; errors as above.
QImage gallerySheet(const QVector<KelWidgetInfo> &list);
