/// \file
/// Reads a panel's catalogue when the panel is on the screen.
#pragma once

#include "command.h"

#include <QWidget>

#include <functional>

/// Checks the rest of the open catalogue \a path (Kel::commandsDB), of which only the pages were checked before, and
/// reads its lists once, right after the first frame of \a window; then has its buttons look their commands up again.
/// Devices ask the database itself and need no lists. Nothing is read when \a whenWrong was told what is wrong with the
/// catalogue. GUI thread only.
void readCatalogueAfterFirstFrame(QWidget &window, const QString &path,
                                  std::function<void(const CommandError &)> whenWrong);
