/// \file
/// Where the icon and the text of a button stand.
#pragma once

#include <QRect>
#include <QSize>
#include <kelwidgetsexport.h>

/// Size that an icon gets on a button of size \a button: \a icon, or what fits into the room that
/// the button leaves beside or above the text (\a text, its size), keeping the proportions. An icon is
/// never enlarged; without any room the size is empty.
KEL_WIDGETS_EXPORT QSize buttonIconSize(const QSize &button, const QSize &icon, const QSize &text,
                                        Qt::ToolButtonStyle style);

/// Places on a button, in its coordinates.
struct ButtonFace {
    QRect icon;
    QRect text; ///< Null when no text is drawn.
    Qt::Alignment textAlignment = Qt::AlignCenter;
};

/// Places an icon of size \a icon and a text of size \a text (not valid: no text) on a button of size \a button.
KEL_WIDGETS_EXPORT ButtonFace layoutButtonFace(const QSize &button, const QSize &icon, const QSize &text,
                                               Qt::ToolButtonStyle style);
