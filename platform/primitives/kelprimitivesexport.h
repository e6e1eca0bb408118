/// \file
/// Marks what libKel_primitives shows to other libraries and programs.
#pragma once

#include <QtCore/qglobal.h>

#ifdef KEL_BUILDING_PRIMITIVES
#define KEL_PRIMITIVES_EXPORT Q_DECL_EXPORT
#else
#define KEL_PRIMITIVES_EXPORT Q_DECL_IMPORT
#endif
