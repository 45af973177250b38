#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

#include "office/file_description.h"
#include "office/record_manager.h"
#include "stress/store.h"

namespace stress {
namespace {

constexpr int kCounterSlot = -1;
constexpr int kCounterName = 0;

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

enum KeyNumber : char { kByNumber, kBySlot, kByName };

int NameOf(int slot, int item) {
  constexpr int kItemsPerSlot = 10'000'000;
  return slot == kCounterSlot ? kCounterName : (slot + 1) * kItemsPerSlot + item;
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
    throw Fault(Fault::kTorn, "record " + std::to_string(record.number) + " is torn");
  }
}

void Must(int status, const char* what) {
  if (status == btrieve::kSuccess) return;
  throw Fault(Fault::kRefused, std::string(what) + " gave status " + std::to_string(status));
}

bool IsBusy(int status) { return status == btrieve::kRecordInUse || status == btrieve::kFileInUse; }

// The file, opened for one stretch of work as an export would.
class RecordCursor {
 public:
  RecordCursor(const std::filesystem::path& office, const btrieve::EntryPoint& manager)
      : client_(manager) {
    const std::string path = (office / kRecordsFile).string();
    Must(Patiently([&] { return client_.Open(path); }), "Open");
  }
  ~RecordCursor() { Call(btrieve::kClose, kByNumber); }
  RecordCursor(const RecordCursor&) = delete;
  RecordCursor& operator=(const RecordCursor&) = delete;

  int Call(WORD operation, KeyNumber key) {
    return Patiently([&] { return CallOnce(operation, key); });
  }
  int CallOnce(WORD operation, KeyNumber key) { return client_.Call(operation, key, record); }

  void SetKey(std::int32_t value) { client_.SetKey(value); }

  int Find(KeyNumber key, std::int32_t value) {
    SetKey(value);
    const int status = Call(btrieve::kGetEqual, key);
    if (status == btrieve::kSuccess) ExpectWhole(record);
    return status;
  }

  Record record;

 private:
  // Tries again while others are using the file, as the library does.
  template <class Action>
  static int Patiently(const Action& action) {
    constexpr int kMostAttempts = 1000;
    int status = btrieve::kRecordInUse;
    for (int i = 0; i < kMostAttempts && IsBusy(status); ++i) status = action();
    return status;
  }

  btrieve::Client client_;
};

class Records : public Store {
 public:
  Records(std::filesystem::path office, int slot, btrieve::EntryPoint manager)
      : office_(std::move(office)), slot_(slot), manager_(std::move(manager)) {}

  void Add(int item) override {
    RecordCursor records(office_, manager_);
    records.record = MakeRecord(slot_, item);
    Must(records.Call(btrieve::kInsert, kByNumber), "Insert");
  }

  // In turns in one write, and as a transaction of which nobody may see a half.
  void Replace(int item, int by) override {
    if (by % 2 == 0) return Rewrite(item, by);
    RecordCursor records(office_, manager_);
    int status = btrieve::kRecordInUse;
    while (IsBusy(status)) {
      Must(records.Call(btrieve::kBeginTransaction, kByNumber), "Begin Transaction");
      Remove(item);
      Add(by);
      status = records.CallOnce(btrieve::kEndTransaction, kByNumber);
    }
    Must(status, "End Transaction");
  }

  void Remove(int item) override {
    RecordCursor records(office_, manager_);
    Must(records.Find(kByName, NameOf(slot_, item)), "Get Equal");
    Must(records.Call(btrieve::kDelete, kByName), "Delete");
  }

  // In turns along the slot's own records, and up and down along all. Each walk begins in the midst
  // of another: what that one has seen of the file must not be taken for the present.
  std::set<int> Items() override {
    struct Way {
      WORD begin;
      WORD goOn;
      KeyNumber key;
    };
    constexpr Way kWays[] = {{btrieve::kGetEqual, btrieve::kGetNext, kBySlot},
                             {btrieve::kGetFirst, btrieve::kGetNext, kByNumber},
                             {btrieve::kGetLast, btrieve::kGetPrevious, kByNumber}};
    const Way& way = kWays[turn_++ % std::size(kWays)];
    if (!walker_) walker_.emplace(office_, manager_);
    RecordCursor& records = *walker_;
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

  bool ReadsInOneWalk() const override { return true; }

 private:
  void Rewrite(int item, int by) {
    RecordCursor records(office_, manager_);
    Must(records.Find(kByName, NameOf(slot_, item)), "Get Equal");
    const auto number = records.record.number;
    records.record = MakeRecord(slot_, by);
    records.record.number = number;
    Must(records.Call(btrieve::kUpdate, kByName), "Update");
  }

  static void Take(std::set<int>& items, int item) {
    if (items.insert(item).second) return;
    throw Fault(Fault::kDoubled, "item " + std::to_string(item) + " is there twice");
  }

  std::filesystem::path office_;
  int slot_;
  btrieve::EntryPoint manager_;
  std::optional<RecordCursor> walker_;
  std::size_t turn_ = 0;
};

}  // namespace

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

void StartCounter(const std::filesystem::path& office) {
  RecordCursor counter(office, InstalledManager());
  counter.record = MakeRecord(kCounterSlot, 0);
  Must(counter.Call(btrieve::kInsert, kByNumber), "Insert");
}

std::unique_ptr<Store> OpenRecords(const std::filesystem::path& office, int slot,
                                   const btrieve::EntryPoint& manager) {
  return std::make_unique<Records>(office, slot, manager);
}

int CounterValue(const std::filesystem::path& office) {
  RecordCursor counter(office, InstalledManager());
  Must(counter.Find(kByName, kCounterName), "Get Equal");
  return counter.record.item;
}

void IncrementCounter(const std::filesystem::path& office) {
  RecordCursor counter(office, InstalledManager());
  int status = btrieve::kConflict;
  while (status == btrieve::kConflict) {  // another worker has counted meanwhile
    Must(counter.Find(kByName, kCounterName), "Get Equal");
    const auto number = counter.record.number;
    counter.record = MakeRecord(kCounterSlot, counter.record.item + 1);
    counter.record.number = number;
    status = counter.Call(btrieve::kUpdate, kByName);
  }
  Must(status, "Update");
}

}  // namespace stress
