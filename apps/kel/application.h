/// \file
/// The application object of the commands that show windows.
#pragma once

#include <QApplication>

#include <memory>

struct Program;

/// Makes the application object, painting offscreen when there is no display. What Qt has to say about
/// its surroundings while it starts is not printed, nor are debug messages later: standard error is for
/// what the user has to mend.
std::unique_ptr<QApplication> makeApplication(Program &program);

/// Whether windows of the running application appear on a screen.
bool isOnScreen();

/// Whether the application paints offscreen only because there is no display.
bool isWithoutDisplay();
