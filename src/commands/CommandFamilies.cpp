#include "commands/CommandFamilies.h"

#include "commands/AdvancedCommands.h"
#include "commands/ExtensionCommands.h"

namespace qp {

void registerCommandFamilies(CommandRegistry& registry)
{
    registerExtensionCommands(registry);
    registerAdvancedCommands(registry);
}

}  // namespace qp
