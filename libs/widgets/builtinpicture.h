/// \file
/// The library's own pictures.
#pragma once

#include <QImage>

/// The picture \a name of the library's resources, null when there is none. Reads it anew with each call.
QImage readBuiltInPicture(const char *name);
