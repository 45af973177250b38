#include "handler.h"

extern "C" short WINAPI BTRCALLID(WORD operation, void* positionBlock, void* dataBuffer,
                                  ULONG* dataLength, void* keyBuffer, BYTE keyLength,
                                  char keyNumber, void* clientId) {
  return testkit::Handle({operation, positionBlock, dataBuffer, dataLength, keyBuffer, keyLength,
                          keyNumber, clientId});
}
