// What the tests need of the world they run in and cannot ask in Windows' words.
#pragma once

#include <filesystem>
#include <string>

namespace qlx99::tests::world {

// The folder of the test program. The products do not lie in it, or no test could have an office
// without a record manager: libraries are looked for beside the program first.
std::filesystem::path ProgramFolder();

// The file's name of a library that Windows knows as `name`.dll.
std::string LibraryFile(const std::string& name);

// From now on the registry of this process is an empty one of its own, which may be kept in
// `folder`.
void UsePrivateRegistry(const std::filesystem::path& folder);

// A folder that nobody else uses, empty.
std::filesystem::path MakeFolder();

}  // namespace qlx99::tests::world
