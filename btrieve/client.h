// A record manager's client: one position in one record file, with the buffers that its calls need.
// Everything outside the library that calls a record manager does it with this.
//
//   btrieve::Client client(entryPoint);
//   btrieve::Status status = client.Open(path);
//   client.SetKey(caseId);
//   status = client.Call(btrieve::kGetEqual, kByCase, record);
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "btrieve/btrieve.h"

namespace btrieve {

// The arguments of one call of BTRCALL or, with a client ID, BTRCALLID.
struct Arguments {
  WORD operation;
  void* positionBlock;
  void* dataBuffer;
  ULONG* dataLength;
  void* keyBuffer;
  BYTE keyLength;
  char keyNumber;
  void* clientId = nullptr;
};

// Who answers calls; returns a status.
using EntryPoint = std::function<int(const Arguments&)>;

inline EntryPoint EntryPointOf(BtrCall* call) {
  return [call](const Arguments& a) {
    return call(a.operation, a.positionBlock, a.dataBuffer, a.dataLength, a.keyBuffer, a.keyLength,
                a.keyNumber);
  };
}

// For a call that nothing can keep from succeeding: throws std::runtime_error when it did not.
inline void Must(Status status) {
  if (status != kSuccess) throw std::runtime_error("status " + std::to_string(status));
}

// Opens and closes nothing by itself. A copy is a second position in the same open file.
class Client {
 public:
  explicit Client(EntryPoint entryPoint) : entryPoint_(std::move(entryPoint)) {}

  // Each call returns the record manager's status.

  // `description` is what DescribeFile composes.
  Status Create(const std::string& path, std::string description, char way = kCreateOver) {
    SetKey(path);
    return Call(kCreate, way, description);
  }
  Status Open(const std::string& path, char mode = kOpenNormal) {
    SetKey(path);
    return Call(kOpen, mode);
  }
  Status Close() { return Call(kClose); }

  // Any operation. `data` is what the record manager is given and gives back; what knows no data
  // gets one zero byte, which for Open is an empty owner name.
  Status Call(WORD operation, int keyNumber = 0, std::span<char> data = {}) {
    char nothing = 0;
    if (data.empty()) data = {&nothing, 1};
    auto length = static_cast<ULONG>(data.size());
    const auto status =
        static_cast<Status>(entryPoint_({.operation = operation,
                                         .positionBlock = block.data(),
                                         .dataBuffer = data.data(),
                                         .dataLength = &length,
                                         .keyBuffer = key.data(),
                                         .keyLength = static_cast<BYTE>(key.size()),
                                         .keyNumber = static_cast<char>(keyNumber)}));
    length_ = std::min<std::size_t>(length, data.size());
    return status;
  }

  // The same with a record that is a plain struct.
  template <class Record>
  requires std::is_trivially_copyable_v<Record> Status Call(WORD operation, int keyNumber,
                                                            Record& record) {
    return Call(operation, keyNumber,
                std::span<char>(reinterpret_cast<char*>(&record), sizeof record));
  }

  // How much data came back from the last call.
  std::size_t Length() const { return length_; }

  // What is searched for, or the path; zero bytes behind it.
  void SetKey(std::string_view bytes) {
    key = {};
    bytes.copy(key.data(), key.size());
  }
  void SetKey(std::int32_t value) {
    SetKey(std::string_view(reinterpret_cast<const char*>(&value), sizeof value));
  }

  std::array<std::uint8_t, kPositionBlockSize> block{};
  std::array<char, kMaxKeyLength> key{};

 private:
  EntryPoint entryPoint_;
  std::size_t length_ = 0;
};

}  // namespace btrieve
