#include "support/world.h"

#include <cstdio>
#include <cstdlib>

namespace qlx99::tests::world {
namespace {

std::string farewell;

void CALLBACK EndProcess(void* /*parameter*/, BOOLEAN /*fired*/) {
  std::fputs(farewell.c_str(), stderr);
  std::fflush(stderr);
  TerminateProcess(GetCurrentProcess(), EXIT_FAILURE);  // whatever the other threads wait for
}

}  // namespace

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

void SetDeadline(std::chrono::seconds time, const std::string& what) {
  static HANDLE timer = nullptr;
  if (timer != nullptr) DeleteTimerQueueTimer(nullptr, timer, INVALID_HANDLE_VALUE);
  farewell = what + " takes too long\n";
  CreateTimerQueueTimer(&timer, nullptr, EndProcess, nullptr,
                        static_cast<DWORD>(std::chrono::milliseconds(time).count()), 0,
                        WT_EXECUTEONLYONCE);
}

}  // namespace qlx99::tests::world
