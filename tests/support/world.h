// What the tests need of the world they run in and cannot ask in Windows' words.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "platform/windows_api.h"
#include "testkit/process.h"

namespace qlx99::tests::world {

// The products do not lie in this program's folder, or no test could have an office without a
// record manager: libraries are looked for beside the program first.
using testkit::LibraryFile;
using testkit::ProgramFolder;

// The template among the library's resources.
std::span<const std::byte> DialogTemplate(HMODULE library, WORD id);

// A copy of the text, without a terminator, at the very end of a page; behind it nothing can be
// read. It stays until the process ends.
const char* AtPageEnd(std::string_view text);

}  // namespace qlx99::tests::world
