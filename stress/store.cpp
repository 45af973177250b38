#include <algorithm>
#include <array>
#include <cstring>

#include "office/file_description.h"
#include "office/record_manager.h"
#include "recordmanager/file_format.h"
#include "stress/store.h"

namespace stress {
namespace {

struct Record {
  std::int32_t number = 0;
  std::int32_t slot = 0;
  std::int32_t name = 0;  // of slot and item
  std::array<char, 12> text{};
  std::int32_t item = 0;
  std::array<std::uint32_t, 60> filler{};
};

// The same for the record manager: a key of each type.
struct Item : qlx99::RecordDeclaration<Item> {
  static constexpr qlx99::RecordFileInfo file{kRecordsFile, sizeof(Record)};

  static constexpr Int32Field number{"number", 0};
  static constexpr Int32Field slot{"slot", 4};
  static constexpr Int32Field name{"name", 8};
  static constexpr TextField text{"text", 12, 12};

  static constexpr Key byNumber{0, number, Key::kAutoincrement};
  static constexpr Key bySlot{1, slot, Key::kDuplicates};
  static constexpr Key byName{2, name, Key::kUnique};
  static constexpr Key byText{3, text, Key::kDuplicates};

  static constexpr auto fields = qlx99::Fields(number, slot, name, text);
  static constexpr auto keys = qlx99::Keys(byNumber, bySlot, byName, byText);
};
static_assert(qlx99::IsSound<Item>());

enum Key : char { kByNumber, kBySlot, kByName };

int NameOf(int slot, int item) {
  constexpr int kItemsPerSlot = 10'000'000;
  return (slot + 1) * kItemsPerSlot + item;
}

Record MakeRecord(int slot, int item) {
  Record record;
  record.slot = slot;
  record.name = NameOf(slot, item);
  record.item = item;
  const std::string digits = "item " + std::to_string(item % 7);
  record.text.fill(' ');
  std::ranges::copy(digits, record.text.begin());
  for (std::uint32_t i = 0; i < record.filler.size(); ++i) {
    record.filler[i] = static_cast<std::uint32_t>(item) * 2654435761U + i;
  }
  return record;
}

void ExpectWhole(const Record& record) {
  Record whole = MakeRecord(record.slot, record.item);
  whole.number = record.number;
  if (std::memcmp(&record, &whole, sizeof record) != 0) {
    throw Fault("record " + std::to_string(record.number) + " is torn");
  }
}

void Must(int status, const char* what) {
  if (status != btrieve::kSuccess) throw Refusal(what, status);
}

void Take(std::set<int>& items, int item) {
  if (!items.insert(item).second) throw Fault("item " + std::to_string(item) + " is there twice");
}

}  // namespace

// The file, opened for one stretch of work as an export would.
class Store::Cursor {
 public:
  Cursor(const std::filesystem::path& office, const btrieve::EntryPoint& manager)
      : client_(manager) {
    const std::string path = (office / kRecordsFile).string();
    Must(Patiently([&] { return client_.Open(path); }), "Open");
  }
  ~Cursor() { Call(btrieve::kClose, kByNumber); }
  Cursor(const Cursor&) = delete;
  Cursor& operator=(const Cursor&) = delete;

  int Call(WORD operation, Key key) {
    return Patiently([&] { return CallOnce(operation, key); });
  }
  btrieve::Status CallOnce(WORD operation, Key key) { return client_.Call(operation, key, record); }

  void SetKey(std::int32_t value) { client_.SetKey(value); }

  void Find(std::int32_t name) {
    SetKey(name);
    Must(Call(btrieve::kGetEqual, kByName), "Get Equal");
    ExpectWhole(record);
  }

  Record record;

 private:
  // Tries again while others are using the file, as the library does.
  template <class Action>
  static int Patiently(const Action& action) {
    constexpr int kMostAttempts = 1000;
    btrieve::Status status = btrieve::kRecordInUse;
    for (int i = 0; i < kMostAttempts && IsBusy(status); ++i) status = action();
    return status;
  }

  btrieve::Client client_;
};

Store::Store(std::filesystem::path office, int slot, btrieve::EntryPoint manager)
    : office_(std::move(office)), slot_(slot), manager_(std::move(manager)) {}
Store::Store(Store&& other) noexcept = default;
Store::~Store() = default;

void Store::Add(int item) {
  Cursor records(office_, manager_);
  records.record = MakeRecord(slot_, item);
  Must(records.Call(btrieve::kInsert, kByNumber), "Insert");
}

// In turns in one write, and as a transaction of which nobody may see a half.
void Store::Replace(int item, int by) {
  if (by % 2 == 0) return Rewrite(item, by);
  Cursor records(office_, manager_);
  btrieve::Status status = btrieve::kRecordInUse;
  while (IsBusy(status)) {
    Must(records.Call(btrieve::kBeginTransaction, kByNumber), "Begin Transaction");
    Remove(item);
    Add(by);
    status = records.CallOnce(btrieve::kEndTransaction, kByNumber);
  }
  Must(status, "End Transaction");
}

void Store::Remove(int item) {
  Cursor records(office_, manager_);
  records.Find(NameOf(slot_, item));
  Must(records.Call(btrieve::kDelete, kByName), "Delete");
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
  if (!walker_) walker_ = std::make_unique<Cursor>(office_, manager_);
  Cursor& records = *walker_;
  records.SetKey(slot_);
  std::set<int> items;
  int status = records.Call(way.begin, way.key);
  for (; status == btrieve::kSuccess; status = records.Call(way.goOn, way.key)) {
    ExpectWhole(records.record);
    if (records.record.slot == slot_) Take(items, records.record.item);
    if (records.record.slot != slot_ && way.key == kBySlot) break;
  }
  if (status != btrieve::kKeyNotFound && status != btrieve::kEndOfFile) Must(status, "a walk");
  records.Call(btrieve::kGetFirst, kByNumber);
  return items;
}

void Store::Rewrite(int item, int by) {
  Cursor records(office_, manager_);
  records.Find(NameOf(slot_, item));
  const auto number = records.record.number;
  records.record = MakeRecord(slot_, by);
  records.record.number = number;
  Must(records.Call(btrieve::kUpdate, kByName), "Update");
}

const btrieve::EntryPoint& InstalledManager() {
  static const auto& manager = *new office::RecordManager;
  return manager.EntryPoint();
}

void CreateRecords(const std::filesystem::path& office, const btrieve::EntryPoint& manager) {
  Must(btrieve::Client(manager).Create((office / kRecordsFile).string(),
                                       office::DescribeFile(qlx99::LayoutOf<Item>()),
                                       btrieve::kCreateOnly),
       "Create");
}

void ExpectUndamaged(const std::filesystem::path& file) {
  const std::string name = file.string();
  recordmanager::Connection connection;
  recordmanager::RecordLayout layout;
  Must(recordmanager::OpenDatabase(name, connection, layout), "opening from behind");
  std::string verdict;
  connection.QueryText("PRAGMA integrity_check", verdict);
  if (verdict != "ok") throw Fault(name + ": " + verdict);
}

void UseRollbackJournal(const std::filesystem::path& file) {
  recordmanager::Connection connection;
  Must(connection.Open(file.string(), recordmanager::Connection::Way::kExisting),
       "opening from behind");
  Must(connection.Execute("PRAGMA journal_mode = TRUNCATE"), "leaving the log");
}

}  // namespace stress
