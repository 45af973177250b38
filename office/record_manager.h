// The record manager as an administrator's tool uses it: to make record files, to fill them, and to
// see what they are. Unless a command names another, it is the one that the library loads.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "btrieve/client.h"
#include "btrieve/file_description.h"
#include "office/module.h"
#include "store/record_layout.h"
#include "store/record_manager.h"

namespace office {

// Loaded for the rest of the process; fails when there is none.
class RecordManager {
 public:
  // The one that the library finds.
  RecordManager();

  // That of a library, as LoadModule finds it; the above when the text is empty.
  explicit RecordManager(const std::string& library);

  // The name by which it was found, and where it lies.
  const std::string& Name() const { return name_; }
  std::filesystem::path File() const { return PathOfModule(library_); }

  // Whether it is that of this project, by its name.
  bool IsEmbedded() const { return name_ == qlx99::kRecordManagerNames.back(); }

  const btrieve::EntryPoint& EntryPoint() const { return entryPoint_; }

 private:
  void FindEntryPoints();

  std::string name_;
  HMODULE library_ = nullptr;
  btrieve::EntryPoint entryPoint_;
};

// Everything between its construction and Commit() is written together or not at all; or each
// record by itself, where the record manager knows no transactions.
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

  // Makes a file by its description, over one that is there.
  static void CreateOver(const RecordManager& manager, const std::filesystem::path& path,
                         const std::string& description);

  // `mode` as Open takes it.
  TableFile(const RecordManager& manager, const std::filesystem::path& directory,
            const qlx99::RecordLayout& layout, char mode = btrieve::kOpenNormal);

  // A file of any make, whose records come as long as they are.
  TableFile(const RecordManager& manager, const std::filesystem::path& path, char mode);

  TableFile(const TableFile&) = delete;
  TableFile& operator=(const TableFile&) = delete;
  ~TableFile();

  // Numbers that the record manager assigns come back in the record.
  void Insert(std::span<char> record);

  // The first record in the order of a key, then the ones behind it; nothing at the end.
  std::optional<std::string> First(int key = 0) { return Read(btrieve::kGetFirst, key); }
  std::optional<std::string> Next(int key = 0) { return Read(btrieve::kGetNext, key); }

  // Finds the first record with the value, for TryUpdate with the same key. Returns whether there
  // is one.
  bool Find(int key, std::string_view value);

  // These return false when another record has the value of a key that allows one only.
  bool TryInsert(std::span<char> record) { return TryWrite(btrieve::kInsert, 0, record); }
  bool TryUpdate(int key, std::span<char> record) {
    return TryWrite(btrieve::kUpdate, key, record);
  }

  // What the file says of itself: as Stat gives it, and taken apart.
  std::string Description();
  btrieve::FileFacts Facts() { return btrieve::FactsIn(Description()); }

 private:
  TableFile(const RecordManager& manager, std::filesystem::path path, std::size_t shortest,
            std::size_t longest, char mode);

  std::optional<std::string> Read(WORD operation, int key);
  bool TryWrite(WORD operation, int key, std::span<char> record);

  // Tries again for some seconds while others have the record or the file.
  btrieve::Status Call(WORD operation, int key, std::span<char> data = {});

  btrieve::Client client_;
  std::filesystem::path path_;
  std::size_t shortest_;  // shorter records are filled up with zero bytes
  std::string room_;      // for one record
};

}  // namespace office
