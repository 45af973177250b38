#include "handler.h"

extern "C" short WINAPI BTRCALL(WORD operation, void* positionBlock, void* dataBuffer,
                                ULONG* dataLength, void* keyBuffer, BYTE keyLength,
                                char keyNumber) {
  return testkit::Handle(
      {operation, positionBlock, dataBuffer, dataLength, keyBuffer, keyLength, keyNumber});
}
