// Two workstations on one file, in turns, while its log is written back at any moment: each call of
// each of them ends as a model of the file says. A read that one of them holds within a walk must
// not hide what the other has written since. Or one of them is a guest who may make no files beside
// this one, so that he reads it without a log, and whose memory runs out at any moment, while the
// other comes and goes.
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <utility>
#include <vector>

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

enum Key { kNoKey = -1, kByNumber, kByCase };

// What the file holds.
struct Stored {
  Party party;
  int id = 0;        // never given again
  int version = 0;   // of its last change
  int sequence = 0;  // when it came to its case
};
struct Model {
  std::vector<Stored> records;
  int changes = 0;
};

// Where a record stands on a key.
using Place = std::pair<std::int64_t, int>;
constexpr Place kBeforeAll{INT64_MIN, 0};
constexpr Place kBehindAll{INT64_MAX, 0};

Place PlaceOf(const Stored& record, int key) {
  return key == kByNumber ? Place{record.party.number, 0}
                          : Place{record.party.caseId, record.sequence};
}

class File {
 public:
  File() {
    fuzz::WatchMemory();
    fs::create_directory(folder_);
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

  // Without records; with a log or, as on network drives, without.
  void Renew(bool logged) {
    constexpr std::size_t kJournalModes = 18;  // two bytes of SQLite's header
    for (const char* suffix : {"", "-wal", "-shm", "-journal"}) fs::remove(path_ + suffix);
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
  std::string empty_;
};

class Workstation {
 public:
  Workstation(const File& file, Model& model, char mode = kOpenNormal)
      : file_(file), model_(model) {
    Open(mode);
  }

  void Open(char mode = kOpenNormal) {
    if (client_.Open(file_.Path(), mode) != kSuccess) Found("a file that cannot be opened");
    on_ = kNoKey;
    current_ = {};
  }

  void Close() { Expect(kSuccess, kClose, kByNumber); }

  void Insert(int caseId, Key key) {
    party_ = {0, caseId, model_.changes};
    Stored stored{party_, ++model_.changes, model_.changes, model_.changes};
    for (const Stored& other : model_.records) {
      stored.party.number = std::max(stored.party.number, other.party.number);
    }
    ++stored.party.number;
    model_.records.push_back(stored);
    Expect(kSuccess, kInsert, key);
    on_ = key;
    place_ = PlaceOf(stored, key);
    StandOn(stored);
  }

  void Update(int caseId, Key key) {
    Stored* const record = Current();
    if (current_.id != 0) party_ = {current_.party.number, caseId, model_.changes};
    if (record == nullptr) return Expect(StatusWithoutCurrent(), kUpdate, key);
    record->version = ++model_.changes;
    if (record->party.caseId != caseId) record->sequence = model_.changes;
    record->party = party_;
    Expect(kSuccess, kUpdate, key);
    if (on_ == key) place_ = PlaceOf(*record, key);
    StandOn(*record);
  }

  void Delete() {
    const Stored* const record = Current();
    if (record == nullptr) return Expect(StatusWithoutCurrent(), kDelete, kByNumber);
    model_.records.erase(model_.records.begin() + (record - model_.records.data()));
    Expect(kSuccess, kDelete, kByNumber);
    current_ = {};
  }

  void GetEqual(int caseId) {
    client_.SetKey(caseId);
    const Stored* const found = Nearest(kByCase, {caseId, 0}, true);
    if (found != nullptr && found->party.caseId == caseId) return Get(kGetEqual, kByCase, *found);
    Expect(kKeyNotFound, kGetEqual, kByCase);
    on_ = kNoKey;
    current_ = {};
  }

  void Count() {
    FileDescription description[3]{};  // and two keys
    const Status status = client_.Call(kStat, 0, description);
    fuzz::LetMemoryFail(0, false);
    if (status == kOutOfMemory) return;
    if (status != kSuccess || description[0].recordCount != model_.records.size()) {
      Found("another count");
    }
  }

  // First, Last, Next or Previous.
  void Step(WORD operation, Key key) {
    const bool goesOn = operation == kGetNext || operation == kGetPrevious;
    const bool up = operation == kGetNext || operation == kGetFirst;
    if (goesOn && on_ != key) {
      return Expect(on_ == kNoKey ? kInvalidPositioning : kDifferentKeyNumber, operation, key);
    }
    const Place end = up ? kBeforeAll : kBehindAll;
    const Stored* const found = Nearest(key, goesOn ? place_ : end, up);
    if (found != nullptr) return Get(operation, key, *found);
    if (!Ends(kEndOfFile, operation, key)) return;
    on_ = key;
    place_ = up ? kBehindAll : kBeforeAll;
    current_ = {};
  }

 private:
  // The first record beyond the place; `current_` is what was read there.
  const Stored* Nearest(int key, const Place& place, bool up) const {
    const Stored* nearest = nullptr;
    for (const Stored& record : model_.records) {
      const Place at = PlaceOf(record, key);
      if (up ? at <= place : at >= place) continue;
      if (nearest == nullptr || (at < PlaceOf(*nearest, key)) == up) nearest = &record;
    }
    return nearest;
  }

  void Get(WORD operation, Key key, const Stored& found) {
    if (!Ends(kSuccess, operation, key)) return;
    on_ = key;
    place_ = PlaceOf(found, key);
    StandOn(found);
  }

  void StandOn(const Stored& record) {
    if (std::memcmp(&party_, &record.party, sizeof party_) != 0) Found("another record");
    current_ = record;
  }

  // The record as it was read last, if it is still there so.
  Stored* Current() const {
    const auto found = std::ranges::find(model_.records, current_.id, &Stored::id);
    const bool there = found != model_.records.end() && found->version == current_.version;
    return there ? &*found : nullptr;
  }
  int StatusWithoutCurrent() const { return current_.id == 0 ? kInvalidPositioning : kConflict; }

  // False when there was no memory for it, and so nothing has happened.
  bool Ends(int status, WORD operation, Key key) {
    const int its = client_.Call(operation, key, party_);
    fuzz::LetMemoryFail(0, false);
    if (its != status && its != kOutOfMemory) Found("another status");
    return its == status;
  }
  void Expect(int status, WORD operation, Key key) {
    if (!Ends(status, operation, key)) Found("no memory");
  }

  const File& file_;
  Model& model_;
  Engine engine_;
  Client client_{testkit::EntryPointOf(engine_)};
  Party party_;
  int on_ = kNoKey;  // which key the last read went along
  Place place_;
  Stored current_;
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
      return workstation.Delete();
    case 3:
      return workstation.GetEqual(caseId);
    case 4:
      return workstation.Step(kSteps[choice / 2 % 4], key);
    case 5:
      if (caseId == 0) file.WriteLogBack();
      if (caseId == 1) workstation.Close();
      if (caseId == 1) workstation.Open();
      if (caseId == 2) workstation.Count();
      return;
    default:
      return workstation.Step(kGetNext, key);
  }
}

void TakeTurns(const File& file, Input& input) {
  Model model;
  std::array<Workstation, 2> workstations{Workstation(file, model), Workstation(file, model)};
  while (!input.IsSpent()) Take(workstations[input.Choice(2)], file, input);
}

void LookAsGuest(const File& file, Input& input) {
  Model model;
  { Workstation owner(file, model); }
  file.LetMakeFiles(false);
  Workstation guest(file, model, kOpenReadOnly);
  while (!input.IsSpent()) {
    if (input.OneIn(2)) {
      file.LetMakeFiles(true);
      Workstation owner(file, model);
      for (int i = input.Byte() % 4; i >= 0; --i) Take(owner, file, input);
    }
    file.LetMakeFiles(false);
    const std::uint8_t choice = input.Byte();
    fuzz::LetMemoryFail(input.Byte(), choice % 2 == 0);
    if (choice / 2 % 2 == 0) guest.Count();
    guest.Step(kSteps[choice / 4 % 4], choice / 16 % 2 == 0 ? kByCase : kByNumber);
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
