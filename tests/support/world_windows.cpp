#include "support/world.h"

namespace qlx99::tests::world {

std::span<const std::byte> DialogTemplate(HMODULE library, WORD id) {
  HRSRC resource = FindResourceA(library, MAKEINTRESOURCEA(id), RT_DIALOG);
  if (resource == nullptr) return {};
  const void* const bytes = LockResource(LoadResource(library, resource));
  return {static_cast<const std::byte*>(bytes), SizeofResource(library, resource)};
}

const char* AtPageEnd(std::string_view text) {
  constexpr std::size_t kPage = 4096;
  const std::size_t size = (text.size() / kPage + 1) * kPage;
  void* const memory = VirtualAlloc(nullptr, size + kPage, MEM_RESERVE, PAGE_NOACCESS);
  char* const end =
      static_cast<char*>(VirtualAlloc(memory, size, MEM_COMMIT, PAGE_READWRITE)) + size;
  text.copy(end - text.size(), text.size());
  return end - text.size();
}

}  // namespace qlx99::tests::world
