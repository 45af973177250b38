// Words of the command line that should be commands, and what was meant where they are none.
#pragma once

#include <string>
#include <vector>

// NOLINTNEXTLINE(readability-identifier-naming): another project's name
namespace CLI {
class App;
}

namespace office {

// Fails for the first word that stands in a command's place and is none, with the nearest there is,
// or is an option that does not exist. What stands behind an option is not looked at.
void RequireCommands(const CLI::App& program, const std::vector<std::string>& words);

}  // namespace office
