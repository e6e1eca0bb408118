/// \file
/// What the library tells the application's about window.
#pragma once

#include <kelwidgetsexport.h>

/// Registers the resource set "shared" and adds the library's version and build lines to AboutWindow.
/// Each call adds them once more. GUI thread only.
KEL_WIDGETS_EXPORT void initAbout();
