/// \file
/// What a plot's curve shows and what it is called, as one text.
#pragma once

#include <QString>

#include <kelwidgetsexport.h>

/// One plotted variable. As text it is "left=right": left says where its data comes from, right is the
/// title of its curve.
struct KEL_WIDGETS_EXPORT GraphicVariable {
    QString left;
    QString right;

    /// Reads \a text. It is split at its first "=" and both sides are trimmed. A text without one, or one
    /// that begins with it, is both sides as it stands, blanks included.
    static GraphicVariable fromText(const QString &text);

    /// "left=right", also for a variable that was read from a text without "=".
    QString text() const;
};
