// Every command family the program ships, registered in one place so that the desktop program,
// the command line and the benchmarks run the same set of commands.
#pragma once

namespace qp {

class CommandRegistry;

void registerCommandFamilies(CommandRegistry& registry);

}  // namespace qp
