// The record manager as an administrator's tool uses it: to make record files, to fill them and to
// look what they are. It is the same one that the library loads, by the same names.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>
#include <string>

#include "btrieve/client.h"
#include "btrieve/file_description.h"
#include "store/record_layout.h"

namespace office {

// Loaded for the rest of the process; fails when there is none.
class RecordManager {
 public:
  RecordManager();

  // The name by which it was found.
  const std::string& Name() const { return name_; }

  const btrieve::EntryPoint& EntryPoint() const { return entryPoint_; }

 private:
  std::string name_;
  btrieve::EntryPoint entryPoint_;
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
  btrieve::Client client_;
  bool open_ = true;
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

  // What the file says of itself.
  btrieve::FileFacts Facts();

 private:
  std::optional<std::string> Read(WORD operation);

  btrieve::Client client_;
  std::filesystem::path path_;
  std::size_t recordLength_;
};

}  // namespace office
