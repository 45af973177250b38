// Two workstations on one file, in turns, while its log is written back at any moment: each call of
// each of them ends as it does when one record manager serves both, on a file of its own. A read
// that one of them holds within a walk must not hide what the other has written since. Or one of
// them is a guest who may make no files beside this one, so that he reads it without a log, and
// whose memory runs out at any moment, while the other comes and goes.
#include <unistd.h>

#include <array>
#include <cstring>
#include <filesystem>

#include "btrieve/file_description.h"
#include "fuzz/failing_memory.h"
#include "fuzz/input.h"
#include "recordmanager/sql.h"
#include "testkit/engine_entry_point.h"
#include "testkit/files.h"

namespace {

namespace fs = std::filesystem;
using namespace btrieve;
using fuzz::Found;
using fuzz::Input;
using recordmanager::Connection;
using recordmanager::Engine;

struct Party {
  std::int32_t number = 0;  // given by the record manager
  std::int32_t caseId = 0;
  std::int32_t text = 0;
};

enum Key { kByNumber, kByCase };

class File {
 public:
  File() {
    fuzz::WatchMemory();
    fs::create_directories(twin_.parent_path());
    fs::permissions(twin_.parent_path(), fs::perms::all);
    Engine engine;
    Must(Client(testkit::EntryPointOf(engine))
             .Create(path_,
                     DescribeFile(sizeof(Party), {DescribeKey(0, 4, kAutoincrementKey),
                                                  DescribeKey(4, 4, kIntegerKey,
                                                              kKeyDuplicates | kKeyModifiable)})));
    empty_ = testkit::ReadAll(path_);
  }

  ~File() { fs::remove_all(folder_); }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  const std::string& Path() const { return path_; }
  std::string TwinPath() const { return twin_; }

  // Both without records; the file with a log or, as on network drives, without.
  void Renew(bool logged) {
    constexpr std::size_t kJournalModes = 18;  // two bytes of SQLite's header
    for (const char* suffix : {"", "-wal", "-shm", "-journal"}) {
      fs::remove(path_ + suffix);
      fs::remove(TwinPath() + suffix);
    }
    testkit::WriteAll(twin_, empty_);
    fs::permissions(twin_, fs::perms{0666});
    std::string bytes = empty_;
    if (!logged) bytes[kJournalModes] = bytes[kJournalModes + 1] = 1;
    testkit::WriteAll(path_, bytes);
  }

  // From now on we are the folder's owner, or a guest.
  void LetMakeFiles(bool may) const {
    if (geteuid() != getuid() && seteuid(getuid()) != 0) std::abort();
    fs::permissions(folder_, fs::perms{may ? 0755U : 0555U});
    if (!may && getuid() == 0 && seteuid(65534) != 0) std::abort();
  }

  // As a third process may at any moment.
  void WriteLogBack() const {
    Connection connection;
    connection.Open(path_, Connection::Way::kExisting);
    connection.Checkpoint();
  }

 private:
  // Short, as a name that takes memory of its own meets the lack of it earlier.
  fs::path folder_ = fs::temp_directory_path() / std::to_string(getpid() % 10'000);
  std::string path_ = folder_ / "A";
  fs::path twin_ = folder_ / "twin" / "A";  // which guests may write
  std::string empty_;
};

// The record manager that serves both, and how many changes they have made.
struct Together {
  Engine engine;
  int changes = 0;
};

class Workstation {
 public:
  Workstation(const File& file, Together& together, char mode = kOpenNormal)
      : file_(file), together_(together), mode_(mode) {
    Open();
  }
  ~Workstation() { (void)twin_.Close(); }
  Workstation(const Workstation&) = delete;
  Workstation& operator=(const Workstation&) = delete;

  void Open() {
    if (client_.Open(file_.Path(), mode_) != kSuccess ||
        twin_.Open(file_.TwinPath(), mode_) != kSuccess) {
      Found("a file that cannot be opened");
    }
    client_.key = twin_.key = {};
  }

  void Insert(int caseId, Key key) {
    party_ = {0, caseId, ++together_.changes};
    Take(kInsert, key);
  }

  void Update(int caseId, Key key) {
    party_ = {party_.number, caseId, ++together_.changes};
    Take(kUpdate, key);
  }

  void GetEqual(int caseId) {
    client_.SetKey(caseId);
    Take(kGetEqual, kByCase);
  }

  void Count() {
    std::array<FileDescription, 3> description{};  // and two keys
    Take(kStat, kByNumber, description);
  }

  // What needs no more than the record that was read or written last.
  void Take(WORD operation, Key key) { Take(operation, key, party_); }

 private:
  // When there is no memory for it, nothing has happened.
  template <class Data>
  void Take(WORD operation, Key key, Data& data) {
    Data twins = data;
    twin_.key = client_.key;
    const Status status = client_.Call(operation, key, data);
    fuzz::LetMemoryFail(0, false);
    if (status == kOutOfMemory && mode_ == kOpenReadOnly) {
      data = twins;
      client_.key = twin_.key;
      return;
    }
    if (twin_.Call(operation, key, twins) != status) Found("another status");
    if (std::memcmp(&data, &twins, sizeof data) != 0 || client_.key != twin_.key) {
      Found("another record");
    }
  }

  const File& file_;
  Together& together_;
  char mode_;
  Engine engine_;
  Client client_{testkit::EntryPointOf(engine_)};
  Client twin_{testkit::EntryPointOf(together_.engine)};
  Party party_;
};

constexpr WORD kSteps[] = {kGetNext, kGetPrevious, kGetFirst, kGetLast};

void Take(Workstation& workstation, const File& file, Input& input) {
  const std::uint8_t choice = input.Byte();
  const Key key = choice % 2 == 0 ? kByCase : kByNumber;
  const int caseId = choice / 2 % 4 - 1;
  switch (choice / 8 % 8) {
    case 0:
      return workstation.Insert(caseId, key);
    case 1:
      return workstation.Update(caseId, key);
    case 2:
      return workstation.Take(kDelete, kByNumber);
    case 3:
      return workstation.GetEqual(caseId);
    case 4:
      return workstation.Take(kSteps[choice / 2 % 4], key);
    case 5:
      if (caseId == 0) file.WriteLogBack();
      if (caseId == 1) workstation.Take(kClose, kByNumber);
      if (caseId == 1) workstation.Open();
      if (caseId == 2) workstation.Count();
      return;
    default:
      return workstation.Take(kGetNext, key);
  }
}

void TakeTurns(const File& file, Input& input) {
  Together together;
  std::array<Workstation, 2> workstations{Workstation(file, together), Workstation(file, together)};
  while (!input.IsSpent()) Take(workstations[input.Choice(2)], file, input);
}

void LookAsGuest(const File& file, Input& input) {
  Together together;
  { Workstation owner(file, together); }
  file.LetMakeFiles(false);
  Workstation guest(file, together, kOpenReadOnly);
  while (!input.IsSpent()) {
    if (input.OneIn(2)) {
      file.LetMakeFiles(true);
      Workstation owner(file, together);
      for (int i = input.Byte() % 4; i >= 0; --i) Take(owner, file, input);
    }
    file.LetMakeFiles(false);
    const std::uint8_t choice = input.Byte();
    fuzz::LetMemoryFail(input.Byte(), choice % 2 == 0);
    if (choice / 2 % 2 == 0) guest.Count();
    guest.Take(kSteps[choice / 4 % 4], choice / 16 % 2 == 0 ? kByCase : kByNumber);
  }
  file.LetMakeFiles(true);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static File file;
  Input input(bytes, size);
  const std::uint8_t mode = input.Byte();
  file.Renew(mode % 4 != 3);
  mode % 16 == 1 ? LookAsGuest(file, input) : TakeTurns(file, input);
  return 0;
}
