// The published entry points. Calls of several threads take turns.
#include <cstring>
#include <mutex>
#include <type_traits>

#include "recordmanager/btrieve.h"
#include "recordmanager/engine.h"

namespace {

using recordmanager::Call;
using recordmanager::Engine;

short Serve(const Call& call) noexcept {
  static std::mutex mutex;
  // Made by the first call, as the loader's lock is held while a library is attached. Destroyed
  // under it all the same, when the library is freed or the process ends; but all that happens then
  // is that files are closed, for which no other library is needed and nobody is waited for.
  static Engine engine;
  const std::scoped_lock lock(mutex);
  return static_cast<short>(engine.Serve(call));
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
