// What the command line's arguments must look like before a command is run with them.
#pragma once

#include <CLI/CLI.hpp>

namespace office {

// For a folder or a library, which a script may have forgotten to fill in.
CLI::Validator NotEmpty();

// The same for a role, which may be blank.
CLI::Validator Filled();

// The same for a case number. Of a longer one the library would read the beginning, which may be
// another case's. Blanks at its end do not count.
CLI::Validator CaseNumber();

}  // namespace office
