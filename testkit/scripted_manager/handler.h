// A record manager without a will of its own: what its entry points are asked goes to a function of
// the program that loads it. Built with both entry points or with one of them.
#pragma once

#include "btrieve/client.h"

namespace testkit {

// The client ID is null for what came through BTRCALL. Returns a status.
using ManagerHandler = int(void* context, const btrieve::Arguments& arguments);

// The library's third entry point, under the name "SetHandler". Without a handler everything fails
// with an I/O error.
using SetHandlerFunction = void(ManagerHandler* handler, void* context);

// Whether the data buffer of the operation brings something.
inline bool BringsData(WORD operation) {
  return operation == btrieve::kOpen || operation == btrieve::kInsert ||
         operation == btrieve::kUpdate;
}

short Handle(const btrieve::Arguments& arguments);

}  // namespace testkit
