/// \file
/// Where the examples stand that come with the program.
#pragma once

#include <QString>

/// Path of the example \a file (for instance "hall/hall.ui"). The build and the installed tree agree:
/// examples stand in ../share/KelWidgets/examples of the program's folder. The environment variable
/// KEL_EXAMPLES names another folder. Throws a CommandError when there is no such file.
QString examplePath(const QString &file);
