/// \file
/// Paths with macros, and the search for programs and files.
#pragma once

#include <QString>
#include <kelwidgetsexport.h>

/// \a path as a folder: with "$home", "$documents", "$downloads" and "$desktop" replaced by the user's
/// folders, "/" between and at the end. "/" for an empty path.
KEL_WIDGETS_EXPORT QString parsePath(QString path);

/// Absolute path of the program \a name, whose extension is dropped first. A relative name is looked
/// for in the application's folder, then from the current one. Empty when there is no such file.
KEL_WIDGETS_EXPORT QString findExecutable(QString name);

/// The first of these that is a file: \a file; \a file with its extension (all after the first dot of
/// its name) replaced by \a ext; if \a file is relative, both again in \a dir, unless that is empty,
/// and in the folder "include". The last of them when none is.
KEL_WIDGETS_EXPORT QString findFile(QString file, QString ext, const QString &dir);
