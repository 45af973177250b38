#include "handler.h"

#include "recordmanager/btrieve.h"

namespace qlx99::tests {
namespace {

ManagerHandler* currentHandler = nullptr;
void* currentContext = nullptr;

}  // namespace

short Handle(WORD operation, void* positionBlock, void* dataBuffer, ULONG* dataLength,
             void* keyBuffer, BYTE keyLength, char keyNumber, void* clientId) {
  if (currentHandler == nullptr) return btrieve::kIoError;
  return currentHandler(currentContext, operation, positionBlock, dataBuffer, dataLength, keyBuffer,
                        keyLength, keyNumber, clientId);
}

extern "C" void SetHandler(ManagerHandler* handler, void* context) {
  currentHandler = handler;
  currentContext = context;
}

}  // namespace qlx99::tests
