// Areas whose commands are not written yet have none.
#include "tools/zrbench/command.h"

#define INTERIM(function)                                                                                      \
    __attribute__((weak)) std::span<const Command> function()                                                  \
    {                                                                                                          \
        return {};                                                                                             \
    }

namespace zrbench
{
INTERIM(portCommands)
INTERIM(portDiagnosticsCommands)
INTERIM(macCommands)
INTERIM(stpCommands)
INTERIM(vlanCommands)
INTERIM(trunkCommands)
INTERIM(aclCommands)
INTERIM(qosCommands)
} // namespace zrbench
