#include "commands/CommandFamilies.h"

#include "commands/ExtensionCommands.h"
#include "commands/NormalCommands.h"

namespace qp {

void registerCommandFamilies(CommandRegistry& registry)
{
    registerNormalCommands(registry);
    registerExtensionCommands(registry);
}

}  // namespace qp
