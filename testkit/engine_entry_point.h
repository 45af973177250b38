#pragma once

#include "btrieve/client.h"
#include "recordmanager/engine.h"

namespace testkit {

// A record manager of one's own within this process: what another process would have. `engine` must
// stay.
inline btrieve::EntryPoint EntryPointOf(recordmanager::Engine& engine) {
  return [&engine](const btrieve::Arguments& a) {
    return engine.Serve({.operation = a.operation,
                         .positionBlock = static_cast<std::uint8_t*>(a.positionBlock),
                         .dataBuffer = static_cast<std::uint8_t*>(a.dataBuffer),
                         .dataLength = a.dataLength,
                         .keyBuffer = static_cast<std::uint8_t*>(a.keyBuffer),
                         .keyLength = a.keyLength,
                         .keyNumber = static_cast<signed char>(a.keyNumber)});
  };
}

}  // namespace testkit
