// A file in a folder in which its reader may make none, so that he reads it without a log, while
// another comes and goes who writes it, and memory runs out at any moment: each call ends with what
// is in the file by then, or says that there is no memory.
#include <unistd.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <string>

#include "fuzz/failing_memory.h"
#include "fuzz/input.h"
#include "recordmanager/engine.h"

namespace {

namespace fs = std::filesystem;
using namespace btrieve;
using recordmanager::Engine;

#pragma pack(push, 1)
struct Description {
  FileDescription file{4, 4096, 1, 0, 0, 0, 0, 0, 0};
  KeyDescription key{1, 4, kKeyExtendedType, 0, kAutoincrementKey, 0, 0, 0, 0};
};
#pragma pack(pop)

class Client {
 public:
  int Call(WORD operation, char keyNumber = 0) {
    auto length = static_cast<std::uint16_t>(data_.size());
    return engine_.Serve({.operation = operation,
                          .positionBlock = block_.data(),
                          .dataBuffer = data_.data(),
                          .dataLength = &length,
                          .keyBuffer = key_.data(),
                          .keyLength = key_.size(),
                          .keyNumber = keyNumber});
  }
  int Create(const std::string& path) {
    const Description description;
    std::memcpy(data_.data(), &description, sizeof description);
    return CallFor(path, kCreate, kCreateOver);
  }
  int Open(const std::string& path, char mode) { return CallFor(path, kOpen, mode); }
  int Insert() {
    data_ = {};
    return Call(kInsert, -1);
  }
  std::uint32_t Number() const {
    std::uint32_t number = 0;
    std::memcpy(&number, data_.data(), sizeof number);
    return number;
  }
  std::uint32_t Count() const {
    FileDescription description{};
    std::memcpy(&description, data_.data(), sizeof description);
    return description.recordCount;
  }

 private:
  int CallFor(const std::string& path, WORD operation, char mode) {
    std::memcpy(key_.data(), path.c_str(), path.size() + 1);
    return Call(operation, mode);
  }

  Engine engine_;
  std::array<std::uint8_t, kPositionBlockSize> block_{};
  std::array<std::uint8_t, 64> data_{};
  std::array<std::uint8_t, kMaxKeyLength> key_{};
};

class File {
 public:
  File() {
    fuzz::LetMemoryFail();
    fs::create_directory(folder_);
  }
  ~File() { fs::remove_all(folder_); }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  const std::string& Path() const { return path_; }

  // From now on we are the folder's owner, or the reader who may make no files in it.
  void LetMakeFiles(bool may) const {
    if (geteuid() != getuid() && seteuid(getuid()) != 0) std::abort();
    fs::permissions(folder_, fs::perms{may ? 0755U : 0555U});
    if (!may && getuid() == 0 && seteuid(65534) != 0) std::abort();
  }

  // Somebody comes, adds a record and goes, with all his log.
  void AddRecord() const {
    LetMakeFiles(true);
    {
      Client writer;
      if (writer.Open(path_, kOpenNormal) != kSuccess || writer.Insert() != kSuccess) {
        fuzz::Found("the file cannot be written");
      }
    }
    LetMakeFiles(false);
  }

 private:
  // Short, as a name that takes memory of its own meets the lack of it earlier.
  std::string folder_ = "/tmp/q" + std::to_string(getpid());
  std::string path_ = folder_ + "/A";
};

void Read(Client& reader, fuzz::Input& input, std::uint32_t count) {
  const WORD operation = input.OneIn(2) ? kGetLast : kStat;
  int status = kSuccess;
  {
    const bool lasts = input.OneIn(2);
    const fuzz::FailingMemory memory(input.Byte(), lasts);
    status = reader.Call(operation);
  }
  if (status == kOutOfMemory) return;
  if (status != kSuccess) fuzz::Found("no published status");
  if (count != (operation == kStat ? reader.Count() : reader.Number())) fuzz::Found("a stale file");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const File file;
  fuzz::Input input(bytes, size);
  Client().Create(file.Path());
  file.AddRecord();
  {
    Client reader;
    if (reader.Open(file.Path(), kOpenReadOnly) != kSuccess) fuzz::Found("the file is not read");
    for (std::uint32_t count = 1; !input.IsSpent();) {
      if (input.OneIn(2)) {
        file.AddRecord();
        ++count;
      }
      Read(reader, input, count);
    }
  }
  file.LetMakeFiles(true);
  return 0;
}
