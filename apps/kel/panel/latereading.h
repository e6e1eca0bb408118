/// \file
/// Reads a panel's catalogue when the panel is on the screen.
#pragma once

#include <QWidget>

/// Reads the lists of the open catalogue (Kel::commandsDB) once, right after the first frame of \a window, and has
/// its buttons look their commands up again. Devices ask the database itself and need no lists. GUI thread only.
void readCatalogueAfterFirstFrame(QWidget &window);
