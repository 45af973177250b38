// The record manager as an administrator's tool uses it: to make record files, to fill them and to
// look what they are. It is the same one that the library loads, by the same names.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "recordmanager/btrieve.h"
#include "store/record_layout.h"

namespace office {

// Loaded for the rest of the process; fails when there is none.
class RecordManager {
 public:
  RecordManager();

  // One whose entry point is known.
  explicit RecordManager(btrieve::BtrCall* call) : call_(call) {}

  // The name by which it was found.
  const std::string& Name() const { return name_; }

  // What one operation takes, beside its code. `data` is both given and received.
  struct Arguments {
    std::span<std::byte> positionBlock;
    std::span<char> data;
    std::array<char, btrieve::kMaxKeyLength>& key;
    char keyNumber = 0;
  };

  // One operation, once. Returns the record manager's status; `length`, when given, receives how
  // many bytes came back.
  btrieve::Status Call(WORD operation, const Arguments& arguments,
                       std::size_t* length = nullptr) const;

 private:
  std::string name_;
  btrieve::BtrCall* call_ = nullptr;
};

// Everything between its construction and Commit() is written together or not at all.
class Transaction {
 public:
  explicit Transaction(const RecordManager& manager);
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  ~Transaction();

  void Commit();

 private:
  const RecordManager& manager_;
  bool open_ = true;
};

// What a record file says of itself.
struct FileFacts {
  btrieve::FileDescription file{};
  std::vector<btrieve::KeyDescription> keys;
};

// One open record file, closed by the destructor. Every function fails with the file's path and a
// word on the status, unless it says otherwise.
class TableFile {
 public:
  // Makes a file by its declaration. One that is there already is never touched.
  static void Create(const RecordManager& manager, const std::filesystem::path& directory,
                     const qlx99::RecordLayout& layout);

  TableFile(const RecordManager& manager, const std::filesystem::path& directory,
            const qlx99::RecordLayout& layout);
  TableFile(const TableFile&) = delete;
  TableFile& operator=(const TableFile&) = delete;
  ~TableFile();

  // Numbers that the record manager assigns come back in the record.
  void Insert(std::span<char> record);

  // The first record in the order of key 0, then the ones behind it; nothing at the end.
  std::optional<std::string> First() { return Read(btrieve::kGetFirst); }
  std::optional<std::string> Next() { return Read(btrieve::kGetNext); }

  FileFacts Facts();

 private:
  std::optional<std::string> Read(WORD operation);
  btrieve::Status Call(WORD operation, std::span<char> data, std::size_t* length = nullptr);

  const RecordManager& manager_;
  std::filesystem::path path_;
  std::size_t recordLength_;
  std::array<std::byte, btrieve::kPositionBlockSize> positionBlock_{};
  std::array<char, btrieve::kMaxKeyLength> key_{};
};

}  // namespace office
