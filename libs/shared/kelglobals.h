/// \file
/// Objects that the whole application shares. They exist from the loading of the library to the end
/// of the process. GUI thread only.
#pragma once

#include <kelwidgetsexport.h>
#include <kvcommands.h>

namespace Kel
{

/// The command catalogue that the widgets look into; closed until somebody opens it.
extern KEL_WIDGETS_EXPORT KvCommands commandsDB;

} // namespace Kel
