/// \file
/// Marks what libKel_toolkit shows to other libraries and programs.
#pragma once

#include <QtCore/qglobal.h>

#ifdef KEL_BUILDING_TOOLKIT
#define KEL_TOOLKIT_EXPORT Q_DECL_EXPORT
#else
#define KEL_TOOLKIT_EXPORT Q_DECL_IMPORT
#endif
