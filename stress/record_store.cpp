#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

#include "office/record_manager.h"
#include "stress/store.h"

namespace stress {
namespace {

constexpr int kCounterSlot = -1;
constexpr int kCounterName = 0;

#pragma pack(push, 1)
struct Record {
  std::int32_t number = 0;      // key 0: autoincrement
  std::int32_t slot = 0;        // key 1: integer, duplicates
  std::int32_t name = 0;        // key 2: integer, names slot and item
  std::array<char, 12> text{};  // key 3: string, duplicates; the item's last digits
  std::int32_t item = 0;
  std::array<std::uint32_t, 60> filler{};
};
#pragma pack(pop)

enum Key : char { kByNumber, kBySlot, kByName, kByText };

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

const office::RecordManager& Manager() {
  static const office::RecordManager manager;
  return manager;
}

// The file, opened for one stretch of work as an export would.
class RecordCursor {
 public:
  explicit RecordCursor(const std::filesystem::path& office) {
    const std::string path = (office / kRecordsFile).string();
    std::ranges::copy(path, key_.begin());
    Must(Call(btrieve::kOpen, kByNumber), "Open");
  }
  ~RecordCursor() { Call(btrieve::kClose, kByNumber); }
  RecordCursor(const RecordCursor&) = delete;
  RecordCursor& operator=(const RecordCursor&) = delete;

  int Call(WORD operation, Key key) {
    std::array<char, sizeof(Record)> data{};
    std::memcpy(data.data(), &record, sizeof record);
    const int status = Manager().Call(operation, {block_, data, key_, key});
    std::memcpy(&record, data.data(), sizeof record);
    return status;
  }

  int Find(Key key, std::int32_t value) {
    std::memcpy(key_.data(), &value, sizeof value);
    const int status = Call(btrieve::kGetEqual, key);
    if (status == btrieve::kSuccess) ExpectWhole(record);
    return status;
  }

  Record record;

 private:
  std::array<std::byte, btrieve::kPositionBlockSize> block_{};
  std::array<char, btrieve::kMaxKeyLength> key_{};
};

class Records : public Store {
 public:
  Records(std::filesystem::path office, int slot) : office_(std::move(office)), slot_(slot) {}

  void Add(int item) override {
    RecordCursor records(office_);
    records.record = MakeRecord(slot_, item);
    Must(records.Call(btrieve::kInsert, kByNumber), "Insert");
  }

  void Replace(int item, int by) override {
    RecordCursor records(office_);
    Must(records.Find(kByName, NameOf(slot_, item)), "Get Equal");
    const auto number = records.record.number;
    records.record = MakeRecord(slot_, by);
    records.record.number = number;
    Must(records.Call(btrieve::kUpdate, kByName), "Update");
  }

  void Remove(int item) override {
    RecordCursor records(office_);
    Must(records.Find(kByName, NameOf(slot_, item)), "Get Equal");
    Must(records.Call(btrieve::kDelete, kByName), "Delete");
  }

  std::set<int> Items() override {
    RecordCursor records(office_);
    std::set<int> items;
    int status = records.Find(kBySlot, slot_);
    while (status == btrieve::kSuccess && records.record.slot == slot_) {
      ExpectWhole(records.record);
      if (!items.insert(records.record.item).second) {
        throw Fault(Fault::kDoubled,
                    "item " + std::to_string(records.record.item) + " is there twice");
      }
      status = records.Call(btrieve::kGetNext, kBySlot);
    }
    if (status != btrieve::kKeyNotFound && status != btrieve::kEndOfFile) {
      Must(status, "Get Next");
    }
    return items;
  }

 private:
  std::filesystem::path office_;
  int slot_;
};

btrieve::KeyDescription DescribeKey(std::size_t offset, std::size_t length, unsigned flags,
                                    std::uint8_t type) {
  btrieve::KeyDescription key{};
  key.position = static_cast<std::uint16_t>(offset + 1);
  key.length = static_cast<std::uint16_t>(length);
  key.flags = static_cast<std::uint16_t>(flags | btrieve::kKeyExtendedType);
  key.extendedType = type;
  return key;
}

}  // namespace

void CreateRecords(const std::filesystem::path& office) {
  constexpr unsigned kFree = btrieve::kKeyDuplicates | btrieve::kKeyModifiable;
  struct {
    btrieve::FileDescription file{};
    std::array<btrieve::KeyDescription, 4> keys{
        DescribeKey(offsetof(Record, number), 4, 0, btrieve::kAutoincrementKey),
        DescribeKey(offsetof(Record, slot), 4, kFree, btrieve::kIntegerKey),
        DescribeKey(offsetof(Record, name), 4, btrieve::kKeyModifiable, btrieve::kIntegerKey),
        DescribeKey(offsetof(Record, text), 12, kFree, btrieve::kStringKey)};
  } description;
  description.file.recordLength = sizeof(Record);
  description.file.pageSize = 4096;
  description.file.keyCount = static_cast<std::uint8_t>(description.keys.size());
  std::array<char, sizeof description> data{};
  std::memcpy(data.data(), &description, sizeof description);
  std::array<std::byte, btrieve::kPositionBlockSize> block{};
  std::array<char, btrieve::kMaxKeyLength> key{};
  std::ranges::copy((office / kRecordsFile).string(), key.begin());
  Must(Manager().Call(btrieve::kCreate, {block, data, key, btrieve::kCreateOnly}), "Create");
  RecordCursor counter(office);
  counter.record = MakeRecord(kCounterSlot, 0);
  Must(counter.Call(btrieve::kInsert, kByNumber), "Insert");
}

std::unique_ptr<Store> OpenRecords(const std::filesystem::path& office, int slot) {
  return std::make_unique<Records>(office, slot);
}

int CounterValue(const std::filesystem::path& office) {
  RecordCursor counter(office);
  Must(counter.Find(kByName, kCounterName), "Get Equal");
  return counter.record.item;
}

void IncrementCounter(const std::filesystem::path& office) {
  RecordCursor counter(office);
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
