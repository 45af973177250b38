// A file in a folder in which its reader may make none, so that he reads it without a log, while
// another comes and goes who writes it, and memory runs out at any moment: each call ends with what
// is in the file by then, or says that there is no memory.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "btrieve/file_description.h"
#include "fuzz/failing_memory.h"
#include "fuzz/input.h"
#include "testkit/engine_entry_point.h"

namespace {

namespace fs = std::filesystem;
using namespace btrieve;

constexpr std::size_t kRecordLength = 4;

// A process with one file; its records are nothing but their numbers.
class Workstation : public btrieve::Client {
 public:
  Workstation() : btrieve::Client(testkit::EntryPointOf(engine_)) {}
  Status Insert() {
    std::string record(kRecordLength, '\0');
    return Call(kInsert, -1, record);
  }

 private:
  recordmanager::Engine engine_;
};

class File {
 public:
  File() {
    fuzz::WatchMemory();
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
      Workstation writer;
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

void Read(Workstation& reader, fuzz::Input& input, std::uint32_t count) {
  const bool isStat = !input.OneIn(2);
  FileDescription description[2]{};
  std::uint32_t last = 0;
  const bool lasts = input.OneIn(2);
  fuzz::LetMemoryFail(input.Byte(), lasts);
  const Status status =
      isStat ? reader.Call(kStat, 0, description) : reader.Call(kGetLast, 0, last);
  fuzz::LetMemoryFail(0, false);
  if (status == kOutOfMemory) return;
  if (status != kSuccess) fuzz::Found("no published status");
  if (count != (isStat ? description[0].recordCount : last)) fuzz::Found("a stale file");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const File file;
  fuzz::Input input(bytes, size);
  Must(Workstation().Create(
      file.Path(),
      DescribeFile(kRecordLength, {DescribeKey(0, kRecordLength, kAutoincrementKey)})));
  file.AddRecord();
  {
    Workstation reader;
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
