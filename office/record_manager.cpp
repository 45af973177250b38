#include "office/record_manager.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "office/failure.h"
#include "office/file_description.h"
#include "office/host.h"
#include "store/record_manager.h"

namespace office {
namespace {

using KeyBuffer = std::array<char, btrieve::kMaxKeyLength>;

struct StatusWords {
  int status;
  const char* words;
};

constexpr StatusWords kStatusWords[] = {
    {btrieve::kIoError, "the file cannot be read or is damaged; restore it from a backup"},
    {btrieve::kDuplicateKey, "a record with the same key is there already"},
    {btrieve::kInvalidFileName, "the folder or the name is not usable"},
    {btrieve::kFileNotFound, "there is no such file"},
    {btrieve::kDiskFull, "the disk is full"},
    {btrieve::kDataBufferLength, "its records are longer than this program knows them"},
    {btrieve::kNotARecordFile, "it is not a record file"},
    {btrieve::kAccessDenied, "access was denied; check the rights on the folder"},
    {btrieve::kFileExists, "there is such a file already, and it was left alone"},
    {btrieve::kRecordInUse, "another program is using the record; try again"},
    {btrieve::kFileInUse, "another program is using the file; try again"},
    {btrieve::kPermissionError, "access was denied; check the rights on the folder"},
};

void Check(int status, const std::string& doing) {
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

int CallWithoutFile(const RecordManager& manager, WORD operation) {
  std::array<std::byte, btrieve::kPositionBlockSize> positionBlock{};
  std::array<char, 1> noData{};
  KeyBuffer key{};
  return manager.Call(operation, {positionBlock, noData, key});
}

}  // namespace

RecordManager::RecordManager() {
  for (const char* name : qlx99::kRecordManagerNames) {
    HMODULE library = LoadLibraryA(name);
    if (library == nullptr) continue;
    name_ = name;
    call_ = std::bit_cast<btrieve::BtrCall*>(GetProcAddress(library, btrieve::kBtrCallName));
    break;
  }
  if (name_.empty()) {
    throw Failure(
        "There is no record manager. Put the embedded one, atbtrv32, beside this program.");
  }
  if (call_ == nullptr) {
    throw Failure(name_ + " is no record manager: it has no entry point BTRCALL.");
  }
}

int RecordManager::Call(WORD operation, const Arguments& arguments, std::size_t* length) const {
  constexpr auto kKeyLength = static_cast<BYTE>(btrieve::kMaxKeyLength);
  auto dataLength = static_cast<ULONG>(arguments.data.size());
  const int status = call_(operation, arguments.positionBlock.data(), arguments.data.data(),
                           &dataLength, arguments.key.data(), kKeyLength, arguments.keyNumber);
  if (length != nullptr) *length = std::min<std::size_t>(dataLength, arguments.data.size());
  return status;
}

Transaction::Transaction(const RecordManager& manager) : manager_(manager) {
  Check(CallWithoutFile(manager, btrieve::kBeginTransaction), "Beginning to write");
}

void Transaction::Commit() {
  open_ = false;
  Check(CallWithoutFile(manager_, btrieve::kEndTransaction), "Completing what was written");
}

Transaction::~Transaction() {
  if (open_) CallWithoutFile(manager_, btrieve::kAbortTransaction);
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
  Call(btrieve::kClose, noData);
}

void TableFile::Insert(std::span<char> record) {
  Check(Call(btrieve::kInsert, record), "Writing to " + PathText(path_));
}

std::optional<std::string> TableFile::Read(WORD operation) {
  std::string record(recordLength_, '\0');
  const int status = Call(operation, record);
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

int TableFile::Call(WORD operation, std::span<char> data, std::size_t* length) {
  return manager_.Call(operation, {positionBlock_, data, key_}, length);
}

}  // namespace office
