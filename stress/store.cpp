#include "stress/store.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

#include "btrieve/file_description.h"
#include "recordmanager/file_format.h"
#include "testkit/engine_entry_point.h"

namespace stress {
namespace {

namespace fs = std::filesystem;

struct Record {
  std::int32_t number = 0;
  std::int32_t slot = 0;
  std::int32_t name = 0;  // of slot and item
  std::array<char, 12> text{};
  std::int32_t item = 0;
  std::array<std::uint32_t, 60> filler{};
};

enum Key { kByNumber, kBySlot, kByName };

// For the record manager: a key of each type.
std::string Description() {
  using namespace btrieve;
  constexpr unsigned kFree = kKeyDuplicates | kKeyModifiable;
  return DescribeFile(sizeof(Record),
                      {DescribeKey(offsetof(Record, number), 4, kAutoincrementKey),
                       DescribeKey(offsetof(Record, slot), 4, kIntegerKey, kFree),
                       DescribeKey(offsetof(Record, name), 4, kIntegerKey, kKeyModifiable),
                       DescribeKey(offsetof(Record, text), 12, kStringKey, kFree)});
}

int NameOf(int slot, int item) {
  constexpr int kItemsPerSlot = 10'000'000;
  return (slot + 1) * kItemsPerSlot + item;
}

Record MakeRecord(int slot, int item, int number = 0) {
  Record record{.number = number, .slot = slot, .name = NameOf(slot, item), .item = item};
  record.text.fill(' ');
  std::ranges::copy("item " + std::to_string(item % 7), record.text.begin());
  for (std::uint32_t i = 0; i < record.filler.size(); ++i) {
    record.filler[i] = static_cast<std::uint32_t>(item) * 2654435761U + i;
  }
  return record;
}

void ExpectWhole(const Record& record) {
  const Record whole = MakeRecord(record.slot, record.item, record.number);
  if (std::memcmp(&record, &whole, sizeof record) != 0) {
    throw Fault("record " + std::to_string(record.number) + " is torn");
  }
}

void Require(int status, const char* what) {
  if (status != btrieve::kSuccess) throw Refusal(what, status);
}

}  // namespace

// The file, opened for one stretch of work as an export would.
class Store::Cursor : public btrieve::Client {
 public:
  Cursor(const fs::path& file, const btrieve::EntryPoint& manager) : Client(manager) {
    SetKey(file.string());
    Require(Call(btrieve::kOpen), "Open");
  }
  ~Cursor() { Call(btrieve::kClose); }
  Cursor(const Cursor&) = delete;
  Cursor& operator=(const Cursor&) = delete;

  // Tries again while others are using the file, as the library does.
  int Call(WORD operation, Key by = kByNumber) {
    constexpr int kMostAttempts = 1000;
    btrieve::Status status = CallOnce(operation, by);
    for (int i = 1; i < kMostAttempts && IsBusy(status); ++i) status = CallOnce(operation, by);
    return status;
  }
  btrieve::Status CallOnce(WORD operation, Key by = kByNumber) {
    return Client::Call(operation, by, record);
  }

  void Find(std::int32_t name) {
    SetKey(name);
    Require(Call(btrieve::kGetEqual, kByName), "Get Equal");
    ExpectWhole(record);
  }

  Record record;
};

void Store::Add(int item) {
  Cursor records(file_, manager_);
  records.record = MakeRecord(slot_, item);
  Require(records.Call(btrieve::kInsert), "Insert");
}

// In turns in one write, and as a transaction of which nobody may see a half.
void Store::Replace(int item, int by) {
  Cursor records(file_, manager_);
  if (by % 2 == 0) {
    records.Find(NameOf(slot_, item));
    records.record = MakeRecord(slot_, by, records.record.number);
    return Require(records.Call(btrieve::kUpdate, kByName), "Update");
  }
  btrieve::Status status = btrieve::kRecordInUse;
  while (IsBusy(status)) {
    Require(records.Call(btrieve::kBeginTransaction), "Begin Transaction");
    Remove(item);
    Add(by);
    status = records.CallOnce(btrieve::kEndTransaction);
  }
  Require(status, "End Transaction");
}

void Store::Remove(int item) {
  Cursor records(file_, manager_);
  records.Find(NameOf(slot_, item));
  Require(records.Call(btrieve::kDelete, kByName), "Delete");
}

// In turns along the slot's own records, and up and down along all. Each walk begins in the midst
// of another: what that one has seen of the file must not be taken for the present.
std::set<int> Store::Items() {
  struct Way {
    WORD begin;
    WORD goOn;
    Key key;
  };
  constexpr Way kWays[] = {{btrieve::kGetEqual, btrieve::kGetNext, kBySlot},
                           {btrieve::kGetFirst, btrieve::kGetNext, kByNumber},
                           {btrieve::kGetLast, btrieve::kGetPrevious, kByNumber}};
  const Way& way = kWays[turn_++ % std::size(kWays)];
  if (!walker_) walker_ = std::make_shared<Cursor>(file_, manager_);
  Cursor& records = *walker_;
  records.SetKey(slot_);
  std::set<int> items;
  int status = records.Call(way.begin, way.key);
  for (; status == btrieve::kSuccess; status = records.Call(way.goOn, way.key)) {
    const Record& record = records.record;
    ExpectWhole(record);
    if (record.slot == slot_ && !items.insert(record.item).second) {
      throw Fault("item " + std::to_string(record.item) + " is there twice");
    }
    if (record.slot != slot_ && way.key == kBySlot) break;
  }
  if (status != btrieve::kKeyNotFound && status != btrieve::kEndOfFile) Require(status, "a walk");
  records.Call(btrieve::kGetFirst);
  return items;
}

void CreateRecords(const fs::path& file, const btrieve::EntryPoint& manager) {
  Require(btrieve::Client(manager).Create(file.string(), Description(), btrieve::kCreateOnly),
          "Create");
}

void MakeRecordsIn(const fs::path& folder) {
  fs::create_directories(OfficeIn(folder));
  recordmanager::Engine engine;
  CreateRecords(RecordsIn(folder), testkit::EntryPointOf(engine));
}

void ExpectUndamaged(const fs::path& file) {
  const std::string name = file.string();
  recordmanager::Connection connection;
  recordmanager::RecordLayout layout;
  Require(recordmanager::OpenDatabase(name, connection, layout), "opening from behind");
  std::string verdict;
  connection.QueryText("PRAGMA integrity_check", verdict);
  if (verdict != "ok") throw Fault(name + ": " + verdict);
}

void UseRollbackJournal(const fs::path& file) {
  recordmanager::Connection connection;
  Require(connection.Open(file.string(), recordmanager::Connection::Way::kExisting),
          "opening from behind");
  Require(connection.Execute("PRAGMA journal_mode = TRUNCATE"), "leaving the log");
}

}  // namespace stress
