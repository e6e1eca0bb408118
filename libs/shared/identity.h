/// \file
/// Numbers and digests that tell things apart.
#pragma once

#include <QtGlobal>
#include <kelwidgetsexport.h>
#include <pibytearray.h>

/// A random number of 32 bits. Nobody checks that it was not given before.
KEL_WIDGETS_EXPORT uint generateID();

/// The MD5 digest of \a data, 16 bytes: tells changed data from unchanged, protects against nobody.
KEL_WIDGETS_EXPORT PIByteArray dataHash(const PIByteArray &data);
