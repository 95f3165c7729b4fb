#include "commands/CommandFamilies.h"

#include "commands/AdvancedCommands.h"
#include "commands/ExtensionCommands.h"
#include "commands/MetadataCommands.h"
#include "commands/NormalCommands.h"
#include "commands/ScriptCommands.h"

namespace qp {

void registerCommandFamilies(CommandRegistry& registry)
{
    registerNormalCommands(registry);
    registerExtensionCommands(registry);
    registerAdvancedCommands(registry);
    scriptcommands::registerScriptCommands(registry);
    registerMetadataCommands(registry);
}

}  // namespace qp
