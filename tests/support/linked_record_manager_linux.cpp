// The record manager's own tests are linked with its entry points. Here they find it by its file,
// so that it can be unloaded: a library that came with the program would always be found.
#include "support/record_managers.h"

extern "C" short WINAPI BTRCALL(WORD operation, void* positionBlock, void* dataBuffer,
                                ULONG* dataLength, void* keyBuffer, BYTE keyLength,
                                char keyNumber) {
  return qlx99::tests::EmbeddedCall()(operation, positionBlock, dataBuffer, dataLength, keyBuffer,
                                      keyLength, keyNumber);
}

extern "C" short WINAPI BTRCALLID(WORD operation, void* positionBlock, void* dataBuffer,
                                  ULONG* dataLength, void* keyBuffer, BYTE keyLength,
                                  char keyNumber, void* clientId) {
  return qlx99::tests::EmbeddedCallId()(operation, positionBlock, dataBuffer, dataLength, keyBuffer,
                                        keyLength, keyNumber, clientId);
}
