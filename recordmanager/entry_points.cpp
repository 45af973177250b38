// The published entry points. Calls of several threads take turns.
#include <cstddef>
#include <cstring>
#include <new>
#include <type_traits>

#include "btrieve/btrieve.h"
#include "recordmanager/engine.h"
#include "recordmanager/host_process.h"

namespace {

using recordmanager::Call;
using recordmanager::Engine;

// Made by the first call, as the loader's lock is held while a library is attached; without taking
// memory, which may have run out by then. Nothing destroys it while a thread is in a call.
alignas(Engine) std::byte engineMemory[sizeof(Engine)];
Engine* engine = nullptr;

// Throws nothing; but a thread that is canceled unwinds from the end of its turn.
short Serve(const Call& call) {
  int status = recordmanager::TakeTurn();
  if (status != btrieve::kSuccess) return static_cast<short>(status);
  if (engine == nullptr) engine = new (engineMemory) Engine;
  status = engine->Serve(call);
  recordmanager::EndTurn();
  return static_cast<short>(status);
}

Call MakeCall(WORD operation, void* positionBlock, void* dataBuffer, ULONG* dataLength,
              void* keyBuffer, BYTE keyLength, char keyNumber) {
  return {.operation = operation,
          .positionBlock = static_cast<std::uint8_t*>(positionBlock),
          .dataBuffer = static_cast<std::uint8_t*>(dataBuffer),
          .dataLength = dataLength,
          .keyBuffer = static_cast<std::uint8_t*>(keyBuffer),
          .keyLength = keyLength,
          .keyNumber = static_cast<signed char>(keyNumber)};
}

}  // namespace

namespace recordmanager {

// All that is done is closing files, for which no other library is needed and nobody is waited for.
void OnEnd() {
  if (engine == nullptr) return;
  engine->~Engine();
  engine = nullptr;
  Cursor::ForgetAll();
}

void OnFork() {
  if (engine != nullptr) engine->BecomeChild();
}

}  // namespace recordmanager

extern "C" short WINAPI BTRCALL(WORD operation, void* positionBlock, void* dataBuffer,
                                ULONG* dataLength, void* keyBuffer, BYTE keyLength,
                                char keyNumber) {
  return Serve(
      MakeCall(operation, positionBlock, dataBuffer, dataLength, keyBuffer, keyLength, keyNumber));
}

extern "C" short WINAPI BTRCALLID(WORD operation, void* positionBlock, void* dataBuffer,
                                  ULONG* dataLength, void* keyBuffer, BYTE keyLength,
                                  char keyNumber, void* clientId) {
  Call call =
      MakeCall(operation, positionBlock, dataBuffer, dataLength, keyBuffer, keyLength, keyNumber);
  if (clientId != nullptr) std::memcpy(call.client.data(), clientId, call.client.size());
  return Serve(call);
}

static_assert(std::is_same_v<decltype(BTRCALL), btrieve::BtrCall>);
static_assert(std::is_same_v<decltype(BTRCALLID), btrieve::BtrCallId>);
