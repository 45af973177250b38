// Two workstations on one file, in turns, while its log is written back at any moment: each call of
// each of them ends as a model of the file says. A read that one of them holds within a walk must
// not hide what the other has written since.
#include <algorithm>
#include <array>
#include <cstring>
#include <utility>
#include <vector>

#include "fuzz/input.h"
#include "office/file_description.h"
#include "recordmanager/sql.h"
#include "store/record_layout.h"
#include "testkit/engine_entry_point.h"
#include "testkit/files.h"
#include "testkit/temporary_folder.h"

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

// The same for the record manager.
struct PartyRecord : qlx99::RecordDeclaration<PartyRecord> {
  static constexpr qlx99::RecordFileInfo file{"PARTY.KRV", sizeof(Party)};
  static constexpr Int32Field number{"number", 0};
  static constexpr Int32Field caseId{"caseId", 4};
  static constexpr Key byNumber{0, number, Key::kAutoincrement};
  static constexpr Key byCase{1, caseId, Key::kDuplicates};
  static constexpr auto fields = qlx99::Fields(number, caseId);
  static constexpr auto keys = qlx99::Keys(byNumber, byCase);
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
    Engine engine;
    Must(Client(testkit::EntryPointOf(engine))
             .Create(path_, office::DescribeFile(qlx99::LayoutOf<PartyRecord>())));
    empty_ = testkit::ReadAll(path_);
  }

  const std::string& Path() const { return path_; }

  // Without records; with a log or, as on network drives, without.
  void Renew(bool logged) {
    constexpr std::size_t kJournalModes = 18;  // two bytes of SQLite's header
    for (const char* suffix : {"", "-wal", "-shm", "-journal"}) fs::remove(path_ + suffix);
    std::string bytes = empty_;
    if (!logged) bytes[kJournalModes] = bytes[kJournalModes + 1] = 1;
    testkit::WriteAll(path_, bytes);
  }

  // As a third process may at any moment.
  void WriteLogBack() const {
    Connection connection;
    connection.Open(path_, Connection::Way::kExisting);
    connection.Checkpoint();
  }

 private:
  testkit::TemporaryFolder folder_;
  std::string path_ = folder_.Path() / PartyRecord::file.name;
  std::string empty_;
};

class Workstation {
 public:
  Workstation(const File& file, Model& model) : file_(file), model_(model) { Open(); }

  void Open() {
    if (client_.Open(file_.Path()) != kSuccess) Found("a file that cannot be opened");
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
    Expect(kEndOfFile, operation, key);
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
    Expect(kSuccess, operation, key);
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

  void Expect(int status, WORD operation, Key key) {
    if (client_.Call(operation, key, party_) != status) Found("another status");
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

void Take(Workstation& workstation, const File& file, Input& input) {
  constexpr WORD kSteps[] = {kGetNext, kGetPrevious, kGetFirst, kGetLast};
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
      return;
    default:
      return workstation.Step(kGetNext, key);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static File file;
  Input input(bytes, size);
  file.Renew(!input.OneIn(4));
  Model model;
  std::array<Workstation, 2> workstations{Workstation(file, model), Workstation(file, model)};
  while (!input.IsSpent()) Take(workstations[input.Choice(2)], file, input);
  return 0;
}
