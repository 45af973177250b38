// A record file as the tests open it for themselves, through the embedded record manager.
#pragma once

#include <array>
#include <filesystem>
#include <string>

#include "recordmanager/btrieve.h"
#include "store/record_layout.h"

namespace qlx99::tests {

// Every failure fails the test.
class OpenFile {
 public:
  static void Create(const RecordLayout& layout, const std::filesystem::path& folder);

  OpenFile(const RecordLayout& layout, const std::filesystem::path& folder);
  ~OpenFile();
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  void SetKey(const std::string& bytes);

  // One operation with the record as its data buffer; returns the status.
  int Call(WORD operation, int keyNumber, std::string& record);

 private:
  std::array<std::byte, btrieve::kPositionBlockSize> positionBlock_{};
  std::array<char, btrieve::kMaxKeyLength + 1> key_{};
};

}  // namespace qlx99::tests
