#include "office/record_manager.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <thread>
#include <tuple>
#include <utility>

#include "office/failure.h"
#include "office/file_description.h"
#include "office/host.h"
#include "store/record_manager_library.h"

namespace office {
namespace {

using btrieve::Status;

constexpr std::size_t kLongestRecord = 0xFFFF;  // that a length of 16 bits can tell

struct StatusWords {
  Status status;
  const char* words;
};

constexpr StatusWords kStatusWords[] = {
    {btrieve::kIoError, "the file cannot be read or is damaged; restore it from a backup"},
    {btrieve::kDuplicateKey, "a record with the same key is there already"},
    {btrieve::kInvalidFileName, "the folder or the name is not usable"},
    {btrieve::kFileNotFound, "there is no such file; restore it from a backup"},
    {btrieve::kLogError,
     "what lies beside it (its name with -wal or -journal) belongs to another state of it; put "
     "back the file that lay there before, or delete the two to go on with this file as it is"},
    {btrieve::kDiskFull, "the disk is full; make room on it"},
    {btrieve::kDataBufferLength, "its records are longer than this program knows them"},
    {btrieve::kNotARecordFile,
     "it is not a record file, or one of a later version; restore it from a backup"},
    {btrieve::kAccessDenied, "it may not be written; check the rights on it and its folder"},
    {btrieve::kFileExists, "there is such a file already, and it was left alone"},
    {btrieve::kRecordInUse, "another program is using the record; try again"},
    {btrieve::kFileInUse, "another program is using the file; try again"},
    {btrieve::kFileTableFull, "too many files are open; close other programs"},
    {btrieve::kPermissionError, "it may not be written; check the rights on it and its folder"},
    {btrieve::kOutOfMemory, "there is too little memory; close other programs"},
};

void Check(Status status, const std::string& doing) {
  if (status == btrieve::kSuccess) return;
  const auto* const known = std::ranges::find(kStatusWords, status, &StatusWords::status);
  const bool isKnown = known != std::ranges::end(kStatusWords);
  throw Failure(doing + ": " + (isKnown ? known->words : "the record manager refused") +
                " (status " + std::to_string(status) + ").");
}

std::string KeyText(const std::filesystem::path& path) {
  std::string native = NativeText(path);
  if (native.size() < btrieve::kMaxKeyLength) return native;
  throw Failure("The path " + PathText(path) + " is too long for a record manager.");
}

FARPROC FindEntryPoint(HMODULE library, const std::string& libraryName, const char* name) {
  FARPROC const address = GetProcAddress(library, name);
  if (address != nullptr) return address;
  throw Failure(libraryName + " is no record manager: it has no entry point " + name +
                ". Install the office's record manager again, or remove that file.");
}

}  // namespace

RecordManager::RecordManager() {
  for (const char* name : qlx99::kRecordManagerNames) {
    name_ = name;
    library_ = qlx99::LoadRecordManagerLibrary(name);
    if (library_ != nullptr) break;
  }
  if (library_ == nullptr) {
    throw Failure(
        "There is no record manager. Install the client of the office's Btrieve server; or, for "
        "one machine alone, put the embedded record manager, atbtrv32, beside qlx99.");
  }
  FindEntryPoints();
}

RecordManager::RecordManager(const std::string& library) : name_(library) {
  if (library.empty()) {
    *this = RecordManager();
    return;
  }
  library_ = LoadModule(library);
  if (library_ == nullptr) {
    throw Failure("The record manager " + library + " cannot be loaded (error " +
                  std::to_string(GetLastError()) + "). Check its name and folder.");
  }
  FindEntryPoints();
}

void RecordManager::FindEntryPoints() {
  entryPoint_ = btrieve::EntryPointOf(
      std::bit_cast<btrieve::BtrCall*>(FindEntryPoint(library_, name_, btrieve::kBtrCallName)));
  FindEntryPoint(library_, name_, btrieve::kBtrCallIdName);  // the library will not do without it
}

Transaction::Transaction(const RecordManager& manager) : client_(manager.EntryPoint()) {
  const Status status = client_.Call(btrieve::kBeginTransaction);
  open_ = status != btrieve::kInvalidOperation;
  if (open_) Check(status, "Beginning to write");
}

void Transaction::Commit() {
  if (!open_) return;
  open_ = false;
  Check(client_.Call(btrieve::kEndTransaction), "Completing what was written");
}

Transaction::~Transaction() {
  if (open_) std::ignore = client_.Call(btrieve::kAbortTransaction);
}

void TableFile::Create(const RecordManager& manager, const std::filesystem::path& directory,
                       const qlx99::RecordLayout& layout) {
  const std::filesystem::path path = directory / layout.file.name;
  btrieve::Client client(manager.EntryPoint());
  Check(client.Create(KeyText(path), DescribeFile(layout), btrieve::kCreateOnly),
        "Making " + PathText(path));
}

void TableFile::CreateOver(const RecordManager& manager, const std::filesystem::path& path,
                           const std::string& description) {
  btrieve::Client client(manager.EntryPoint());
  Check(client.Create(KeyText(path), description, btrieve::kCreateOver),
        "Making " + PathText(path));
}

TableFile::TableFile(const RecordManager& manager, const std::filesystem::path& directory,
                     const qlx99::RecordLayout& layout, char mode)
    : TableFile(manager, directory / layout.file.name, layout.file.length, layout.file.length,
                mode) {}

TableFile::TableFile(const RecordManager& manager, const std::filesystem::path& path, char mode)
    : TableFile(manager, path, 0, kLongestRecord, mode) {}

TableFile::TableFile(const RecordManager& manager, std::filesystem::path path, std::size_t shortest,
                     std::size_t longest, char mode)
    : client_(manager.EntryPoint()),
      path_(std::move(path)),
      shortest_(shortest),
      room_(longest, '\0') {
  client_.SetKey(KeyText(path_));
  Check(Call(btrieve::kOpen, mode), "Opening " + PathText(path_));
}

TableFile::~TableFile() { std::ignore = client_.Close(); }

void TableFile::Insert(std::span<char> record) {
  Check(Call(btrieve::kInsert, 0, record), "Writing to " + PathText(path_));
}

std::optional<std::string> TableFile::Read(WORD operation, int key) {
  const Status status = Call(operation, key, room_);
  if (status == btrieve::kEndOfFile) return std::nullopt;
  Check(status, "Reading " + PathText(path_));
  std::string record(room_, 0, client_.Length());
  if (record.size() < shortest_) record.resize(shortest_);
  return record;
}

bool TableFile::Find(int key, std::string_view value) {
  client_.SetKey(value);
  const Status status = Call(btrieve::kGetEqual, key, room_);
  if (status == btrieve::kKeyNotFound) return false;
  Check(status, "Reading " + PathText(path_));
  return true;
}

bool TableFile::TryWrite(WORD operation, int key, std::span<char> record) {
  const Status status = Call(operation, key, record);
  if (status == btrieve::kDuplicateKey) return false;
  Check(status, "Writing to " + PathText(path_));
  return true;
}

std::string TableFile::Description() {
  std::string description(btrieve::kLongestDescription, '\0');
  Check(Call(btrieve::kStat, 0, description), "Examining " + PathText(path_));
  description.resize(client_.Length());
  return description;
}

Status TableFile::Call(WORD operation, int key, std::span<char> data) {
  using namespace std::chrono_literals;
  constexpr auto kPatience = 5s;
  constexpr auto kPause = 20ms;
  const auto end = std::chrono::steady_clock::now() + kPatience;
  for (;;) {
    const Status status = client_.Call(operation, key, data);
    if (!IsBusy(status) || std::chrono::steady_clock::now() > end) return status;
    std::this_thread::sleep_for(kPause);
  }
}

}  // namespace office
