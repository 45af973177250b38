// The registration text file: whatever it holds, what was understood of it is written and read back
// unchanged.
#include "platform/registry_file.h"

#include "fuzz/input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  const std::string once = platform::RegistryFile::Parse(text).Format();
  if (platform::RegistryFile::Parse(once).Format() != once) fuzz::Found("what was read changes");
  return 0;
}
