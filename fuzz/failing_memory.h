// Memory that runs out on command, for C++ and for SQLite.
#pragma once

namespace fuzz {

// The nth allocation from now on fails, and if `lasting` all behind it. With n = 0 none does.
void LetMemoryFail(int nth, bool lasting);

// Once, before SQLite is used.
void WatchMemory();

}  // namespace fuzz
