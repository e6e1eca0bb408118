/// \file
/// Marks what libKel_widgets shows to other libraries and programs.
#pragma once

#include <QtCore/qglobal.h>

#ifdef KEL_BUILDING_WIDGETS
#define KEL_WIDGETS_EXPORT Q_DECL_EXPORT
#else
#define KEL_WIDGETS_EXPORT Q_DECL_IMPORT
#endif
