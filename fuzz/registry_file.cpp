// The registration text file: whatever it holds, a change of one value is read back, and changes
// nothing else.
#include "platform/registry_file.h"

#include "fuzz/input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(bytes), size);
  auto file = platform::RegistryFile::Parse(text);
  if (file.Format() != text) fuzz::Found("what was read changes");
  const std::string key = "HKEY_LOCAL_MACHINE\\Key";
  file.Remove(key, "value");
  file.Set(key, {"value", "text"});
  auto again = platform::RegistryFile::Parse(file.Format());
  const auto* const value = again.Find(key, "value");
  if (value == nullptr || value->bytes != "text") fuzz::Found("what was written is not there");
  again.Set(key, {"value", "text"});
  if (again.Format() != file.Format()) fuzz::Found("what was written changes");
  return 0;
}
