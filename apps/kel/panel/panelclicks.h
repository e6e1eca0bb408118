/// \file
/// Presses buttons of a panel without a finger.
#pragma once

#include <QStringList>

class QWidget;

/// Clicks the buttons of \a window that have these \a names, one after the other, as soon as events are handled.
/// They are far enough apart that the devices hear each for itself. Throws a CommandError when a name belongs
/// to no button.
void clickButtons(QWidget &window, const QStringList &names);
