#include "office/record_manager.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <tuple>

#include "office/failure.h"
#include "office/file_description.h"
#include "office/host.h"
#include "store/record_manager.h"
#include "store/record_manager_library.h"

namespace office {
namespace {

using btrieve::Status;
using KeyBuffer = std::array<char, btrieve::kMaxKeyLength>;

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
     "back "
     "the file that lay there before, or delete the two to go on with this file as it is"},
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

KeyBuffer PathKey(const std::filesystem::path& path) {
  const std::string native = NativeText(path);
  KeyBuffer key{};
  if (native.size() >= key.size()) {
    throw Failure("The path " + PathText(path) + " is too long for a record manager.");
  }
  std::ranges::copy(native, key.begin());
  return key;
}

FARPROC EntryPoint(HMODULE library, const std::string& libraryName, const char* name) {
  FARPROC const address = GetProcAddress(library, name);
  if (address != nullptr) return address;
  throw Failure(libraryName + " is no record manager: it has no entry point " + name +
                ". Install the office's record manager again, or remove that file.");
}

Status CallWithoutFile(const RecordManager& manager, WORD operation) {
  std::array<std::byte, btrieve::kPositionBlockSize> positionBlock{};
  std::array<char, 1> noData{};
  KeyBuffer key{};
  return manager.Call(operation, {positionBlock, noData, key});
}

}  // namespace

RecordManager::RecordManager() {
  HMODULE library = nullptr;
  for (const char* name : qlx99::kRecordManagerNames) {
    name_ = name;
    library = qlx99::LoadRecordManagerLibrary(name);
    if (library != nullptr) break;
  }
  if (library == nullptr) {
    throw Failure(
        "There is no record manager. Put the embedded one, atbtrv32, beside this program.");
  }
  call_ = std::bit_cast<btrieve::BtrCall*>(EntryPoint(library, name_, btrieve::kBtrCallName));
  EntryPoint(library, name_, btrieve::kBtrCallIdName);  // the library will not do without it
}

Status RecordManager::Call(WORD operation, const Arguments& arguments, std::size_t* length) const {
  constexpr auto kKeyLength = static_cast<BYTE>(btrieve::kMaxKeyLength);
  auto dataLength = static_cast<ULONG>(arguments.data.size());
  const short status = call_(operation, arguments.positionBlock.data(), arguments.data.data(),
                             &dataLength, arguments.key.data(), kKeyLength, arguments.keyNumber);
  if (length != nullptr) *length = std::min<std::size_t>(dataLength, arguments.data.size());
  return static_cast<Status>(status);
}

Transaction::Transaction(const RecordManager& manager) : manager_(manager) {
  Check(CallWithoutFile(manager, btrieve::kBeginTransaction), "Beginning to write");
}

void Transaction::Commit() {
  open_ = false;
  Check(CallWithoutFile(manager_, btrieve::kEndTransaction), "Completing what was written");
}

Transaction::~Transaction() {
  if (open_) std::ignore = CallWithoutFile(manager_, btrieve::kAbortTransaction);
}

void TableFile::Create(const RecordManager& manager, const std::filesystem::path& directory,
                       const qlx99::RecordLayout& layout) {
  const std::filesystem::path path = directory / layout.file.name;
  std::array<std::byte, btrieve::kPositionBlockSize> positionBlock{};
  std::string description = DescribeFile(layout);
  KeyBuffer key = PathKey(path);
  Check(manager.Call(btrieve::kCreate, {positionBlock, description, key, btrieve::kCreateOnly}),
        "Making " + PathText(path));
}

TableFile::TableFile(const RecordManager& manager, const std::filesystem::path& directory,
                     const qlx99::RecordLayout& layout)
    : manager_(manager),
      path_(directory / layout.file.name),
      recordLength_(layout.file.length),
      key_(PathKey(path_)) {
  std::array<char, 1> noOwner{};
  Check(Call(btrieve::kOpen, noOwner), "Opening " + PathText(path_));
}

TableFile::~TableFile() {
  std::array<char, 1> noData{};
  std::ignore = Call(btrieve::kClose, noData);
}

void TableFile::Insert(std::span<char> record) {
  Check(Call(btrieve::kInsert, record), "Writing to " + PathText(path_));
}

std::optional<std::string> TableFile::Read(WORD operation) {
  std::string record(recordLength_, '\0');
  const Status status = Call(operation, record);
  if (status == btrieve::kEndOfFile) return std::nullopt;
  Check(status, "Reading " + PathText(path_));
  return record;
}

FileFacts TableFile::Facts() {
  constexpr std::size_t kMostKeys = 119;
  std::array<char, sizeof(btrieve::FileDescription) + kMostKeys * sizeof(btrieve::KeyDescription)>
      description{};
  std::size_t length = 0;
  Check(Call(btrieve::kStat, description, &length), "Examining " + PathText(path_));
  FileFacts facts;
  std::memcpy(&facts.file, description.data(), sizeof facts.file);
  const std::size_t room =
      (length - std::min(length, sizeof facts.file)) / sizeof(btrieve::KeyDescription);
  facts.keys.resize(std::min<std::size_t>(facts.file.keyCount, room));
  std::memcpy(facts.keys.data(), description.data() + sizeof facts.file,
              facts.keys.size() * sizeof(btrieve::KeyDescription));
  return facts;
}

Status TableFile::Call(WORD operation, std::span<char> data, std::size_t* length) {
  return manager_.Call(operation, {positionBlock_, data, key_}, length);
}

}  // namespace office
