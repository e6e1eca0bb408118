/// \file
/// Objects that the whole application shares. They exist from the loading of the library to the end
/// of the process. GUI thread only.
#pragma once

#include <kelwidgetsexport.h>
#include <kvcommands.h>
#include <qpiconnection.h>

namespace Kel
{

/// The command catalogue that the widgets look into; closed until somebody opens it.
extern KEL_WIDGETS_EXPORT KvCommands commandsDB;

/// The devices that the panel talks to; none until somebody opens them.
extern KEL_WIDGETS_EXPORT QPIConnection connection;

} // namespace Kel
