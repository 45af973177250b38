// What is Windows' own about the library's coming and going.
#include <array>
#include <cstdlib>
#include <vector>

#include "party_file.h"
#include "platform/windows_api.h"

namespace recordmanager_tests {
namespace {

struct Possessions {
  DWORD localStorage = TlsAlloc();
  HANDLE handle = CreateEventA(nullptr, FALSE, FALSE, nullptr);
  std::size_t memory = 0;
};

// Of the numbered ones, the first that is free.
Possessions CountPossessions() {
  Possessions have;
  TlsFree(have.localStorage);
  CloseHandle(have.handle);
  std::array<HANDLE, 64> heaps{};
  for (DWORD i = GetProcessHeaps(heaps.size(), heaps.data()); i-- > 0;) {
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(heaps[i], &entry) != 0) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) have.memory += entry.cbData;
    }
  }
  return have;
}

void TakeAllAddresses() {
  for (SIZE_T size = 1U << 28U; size >= 4096; size /= 2) {
    while (VirtualAlloc(nullptr, size, MEM_RESERVE, PAGE_NOACCESS) != nullptr) continue;
  }
}

// Ends the process with the status of one more call.
[[noreturn]] void CallOnceMore() {
  Client one;
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(one.Open("NONE.KRV")));
  std::abort();
}

LONG CALLBACK GoOn(EXCEPTION_POINTERS* /*exception*/) { CallOnceMore(); }

class WindowsLibrary : public PartyFile {
 protected:
  // A thread that waits for who keeps everybody from opening the file.
  static DWORD CALLBACK Wait(void* test) {
    return static_cast<DWORD>(Client().Open(static_cast<WindowsLibrary*>(test)->path));
  }
};

// Hosts load and free it for each letter.
TEST_F(WindowsLibrary, LeavesNothingBehindWhenItIsFreed) {
  constexpr int kTimes = 20;
  Possessions before;
  for (int i = -1; i < kTimes; ++i) {
    client.Do("insert, close");
    testkit::ReleaseEmbedded();
    if (i < 0) before = CountPossessions();
    EXPECT_EQ(client.Open(path), btrieve::kSuccess);
  }
  client.Do("close");
  testkit::ReleaseEmbedded();
  const Possessions after = CountPossessions();
  EXPECT_EQ(after.localStorage, before.localStorage);
  EXPECT_EQ(after.handle, before.handle);
  EXPECT_LT(after.memory, before.memory + kTimes * 500);
}

// The log's users share memory that needs addresses of its own.
TEST_F(WindowsLibrary, SaysSoWhenOnlyItsHeapHasMemoryLeft) {
  testkit::ReleaseEmbedded();
  const auto call = [this] {
    testkit::EmbeddedCallId();
    std::vector<void*> room(2000);
    for (void*& part : room) part = std::malloc(4000);
    TakeAllAddresses();
    for (std::size_t i = 0; i < room.size(); i += 2) std::free(room[i]);  // the heap keeps its own
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(client.Open(path)));
  };
  EXPECT_EXIT(call(), testing::ExitedWithCode(btrieve::kOutOfMemory), "");
}

// What is half done then stays so, but nobody waits for its end.
TEST_F(WindowsLibrary, KeepsNoHostThatGoesOnAfterAnExceptionInACall) {
  const auto call = [this] {
    AddVectoredExceptionHandler(1, GoOn);
    void* const noBuffer = VirtualAlloc(nullptr, kPartyLength, MEM_RESERVE, PAGE_NOACCESS);
    ULONG length = kPartyLength;
    testkit::EmbeddedCall()(btrieve::kInsert, client.block.data(), noBuffer, &length,
                            client.key.data(), btrieve::kMaxKeyLength, 0);
  };
  EXPECT_EXIT(call(), testing::ExitedWithCode(btrieve::kFileInUse), "");
}

TEST_F(WindowsLibrary, KeepsNoHostThatTerminatesAThreadWithinACall) {
  const auto terminate = [this] {
    const HANDLE keepsOut =
        CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    const HANDLE thread = CreateThread(nullptr, 0, Wait, this, 0, nullptr);
    Sleep(500);
    const HANDLE next = CreateThread(nullptr, 0, Wait, this, 0, nullptr);  // waits for its turn
    Sleep(500);
    TerminateThread(thread, 0);
    CloseHandle(keepsOut);
    DWORD status = 0;
    WaitForSingleObject(next, 20'000);
    GetExitCodeThread(next, &status);
    if (status == btrieve::kFileInUse) CallOnceMore();
  };
  client.Do("close");
  testkit::ReleaseEmbedded();
  EXPECT_EXIT(terminate(), testing::ExitedWithCode(btrieve::kFileInUse), "");
}

}  // namespace
}  // namespace recordmanager_tests
