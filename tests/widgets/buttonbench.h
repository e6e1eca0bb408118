/// \file
/// A KelButton set up so that every change of its face can be told apart, and what is done to it.
#pragma once

#include <QPropertyAnimation>
#include <kelbutton.h>

#include <functional>

using Action = std::function<void(KelButton &)>;
Q_DECLARE_METATYPE(Action)

inline QPropertyAnimation *animationOf(const KelButton &button)
{
    return button.findChild<QPropertyAnimation *>();
}

inline QColor faceOf(const KelButton &button)
{
    return button.h__currentColor();
}

inline const QColor Blue(0, 0, 255);
inline const QColor Grayish(100, 101, 102);

/// A button whose colours all differ from each other and that shows every change at once.
inline void prepare(KelButton &button)
{
    button.setAnimated(false);
    button.setGrayColor(Grayish);
    button.setStateGray();
    button.setClickID(7);
}
