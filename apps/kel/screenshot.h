/// \file
/// Pictures of windows.
#pragma once

#include <QString>
#include <QWidget>

/// Saves a picture of \a window at \a path; the suffix decides the format. Throws a CommandError that
/// names the file when that fails, and then there is no half-made file.
void saveScreenshot(QWidget &window, const QString &path);

/// Throws a CommandError when no picture can be saved at \a path, by its suffix or its folder.
void checkScreenshotPath(const QString &path);
