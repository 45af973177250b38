// The record manager: loaded at run time by the first call that needs it, and called through one
// wrapper.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "btrieve/btrieve.h"
#include "frame/registry.h"

namespace qlx99 {

using btrieve::Status;

// The names of its client library; the first one that loads is used. The embedded record manager is
// the last, so that an office's own always wins.
inline constexpr std::array kRecordManagerNames{"w3btrv7.dll", "wbtrv32.dll", "atbtrv32.dll"};

// One open file's position, zero-filled before it is opened. A copy is a second position in the
// same open file.
using PositionBlock = std::array<std::byte, btrieve::kPositionBlockSize>;

// Who calls. All zeros, as everywhere in this library, is the plain call; anything else goes
// through BTRCALLID.
using ClientId = std::array<std::byte, btrieve::kClientIdSize>;

// How often a busy record or file is tried again before the user is told.
inline constexpr int kMaxAttempts = 40000;

// Loads the record manager unless it is loaded, and finds its entry points. False when it cannot be
// used; the user has been told then. It stays loaded until the process ends.
bool EnsureRecordManager();

// One operation of the record manager, repeated while the record or file is busy. Open takes
// `filePath` and no other argument but the position block; Delete removes the record that has the
// key in `keyBuffer`. `dataLength` holds the buffer's size before, the record's length after a
// read. `keyBuffer` has room for btrieve::kMaxKeyLength bytes. An operation that this library does
// not use is not sent and gives kInvalidOperation.
Status RecordCall(WORD operation, PositionBlock& positionBlock, const char* filePath,
                  void* dataBuffer, std::uint16_t& dataLength, void* keyBuffer,
                  std::int16_t keyNumber, const ClientId& clientId);

// Opens the file in the data directory and shows a message when that fails.
Status OpenRecordFile(const char* fileName, PositionBlock& positionBlock, const DataRoot& dataRoot);

// Closes the file and shows a message when that fails.
void CloseRecordFile(const char* fileName, PositionBlock& positionBlock);

}  // namespace qlx99
