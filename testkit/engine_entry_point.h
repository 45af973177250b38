// A second record manager within one process.
#pragma once

#include "btrieve/client.h"
#include "recordmanager/engine.h"

namespace testkit {

// The way into `engine`, which outlives it. It stands for the record manager of another process.
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
