#include "kelglobals.h"

namespace Kel
{

// No path yet: the catalogue is the application's choice, made after its start.
KvCommands commandsDB{QString()};

QPIConnection connection{QStringLiteral("Kel")};

} // namespace Kel
