/// \file
/// What the library does when it is loaded.
#pragma once

#include <kelwidgetsexport.h>

/// Makes the application ready for the library: "gser" full paths open a PIGSerial, and settings are
/// kept under the organisation "Kel", domain "org". The library holds one instance, so this is done
/// when it is loaded, on the thread that loads it; any further instance does nothing and so leaves
/// alone what the application has set since.
class KEL_WIDGETS_EXPORT __Kv_Base_Initializer__
{
public:
    __Kv_Base_Initializer__();

    static bool inited; ///< Whether the work is done.
};
