// A record manager without a will of its own: what its entry points are asked goes to a function of
// the test program. Built with both entry points or with one of them.
#pragma once

#include "platform/windows_api.h"

namespace qlx99::tests {

// `clientId` is null for what came through BTRCALL.
using ManagerHandler = short(void* context, WORD operation, void* positionBlock, void* dataBuffer,
                             ULONG* dataLength, void* keyBuffer, BYTE keyLength, char keyNumber,
                             void* clientId);

// The library's third entry point, under the name "SetHandler". Without a handler everything fails
// with an I/O error.
using SetHandlerFunction = void(ManagerHandler* handler, void* context);

short Handle(WORD operation, void* positionBlock, void* dataBuffer, ULONG* dataLength,
             void* keyBuffer, BYTE keyLength, char keyNumber, void* clientId);

}  // namespace qlx99::tests
