#include "commands/CommandFamilies.h"

#include "commands/ExtensionCommands.h"

namespace qp {

void registerCommandFamilies(CommandRegistry& registry)
{
    registerExtensionCommands(registry);
}

}  // namespace qp
