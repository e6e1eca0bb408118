/// \file
/// What the gallery shows of each widget.
#pragma once

#include <QString>
#include <QVector>

#include <functional>

class QWidget;

/// One look of a widget: a style, a state, a value.
struct GalleryVariant {
    QString caption;
    std::function<void(QWidget &)> apply; ///< Gives a fresh widget of the class this look.
    bool upright = false;                 ///< Its sizes are the widget's with width and height exchanged.
};

/// The looks of the class \a className, the one that stands for it first. A class without a table of its
/// own is shown as it comes.
QVector<GalleryVariant> galleryVariants(const QString &className);
