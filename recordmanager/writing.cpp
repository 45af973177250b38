#include "recordmanager/writing.h"

#include <cstring>
#include <vector>

namespace recordmanager {
namespace {

// The key number that leaves the place on the key alone, and gives back no key.
constexpr int kNoPositioning = -1;

// Checks what Insert and Update have in common. `key` is null when no key is to be given back.
int CheckRecordCall(const Call& call, const RecordLayout& layout, const Key*& key) {
  key = layout.FindKey(call.keyNumber);
  if (call.keyNumber != kNoPositioning) {
    if (key == nullptr) return btrieve::kInvalidKeyNumber;
    if (!call.KeyBufferHolds(*key)) return btrieve::kKeyBufferTooShort;
  }
  return call.Data().size() < layout.RecordLength() ? btrieve::kDataBufferLength
                                                    : btrieve::kSuccess;
}

// Not written from the caller's memory itself: another thread may change that between the keys and
// the record.
std::vector<std::uint8_t> CopyOf(std::span<const std::uint8_t> record) {
  return {record.begin(), record.end()};
}

const Entry& EntryOf(const Key& key, const RecordLayout& layout,
                     const std::vector<Entry>& entries) {
  return entries[static_cast<std::size_t>(&key - layout.keys.data())];
}

int Insert(const Call& call, RecordFile& file, Cursor& cursor) {
  const RecordLayout& layout = file.Layout();
  const Key* key = nullptr;
  if (const int status = CheckRecordCall(call, layout, key); status != btrieve::kSuccess) {
    return status;
  }
  // The numbers it may be given are the caller's only once the record is written.
  const auto data = call.Data().first(layout.RecordLength());
  std::vector<std::uint8_t> record = CopyOf(data);
  RecordVersion version;
  std::vector<Entry> entries;
  if (const int status = file.Insert(record, version, entries); status != btrieve::kSuccess) {
    return status;
  }
  std::memcpy(data.data(), record.data(), record.size());
  cursor.current = version;
  if (key != nullptr) {
    cursor.keyNumber = key->Number();
    cursor.entry = EntryOf(*key, layout, entries);
    call.ReturnKey(*key, data.data());
  }
  return btrieve::kSuccess;
}

int Update(const Call& call, RecordFile& file, Cursor& cursor) {
  if (cursor.current.id == 0) return btrieve::kInvalidPositioning;
  const RecordLayout& layout = file.Layout();
  const Key* key = nullptr;
  if (const int status = CheckRecordCall(call, layout, key); status != btrieve::kSuccess) {
    return status;
  }
  const auto record = CopyOf(call.Data().first(layout.RecordLength()));
  RecordVersion version = cursor.current;
  std::vector<Entry> entries;
  if (const int status = file.Update(record, version, entries); status != btrieve::kSuccess) {
    return status;
  }
  cursor.current = version;
  if (key != nullptr) {
    // By another key than that of the last read the place on that one stays, and reading on by this
    // one is refused.
    if (cursor.keyNumber == key->Number()) cursor.entry = EntryOf(*key, layout, entries);
    call.ReturnKey(*key, record.data());
  }
  return btrieve::kSuccess;
}

int Delete(RecordFile& file, Cursor& cursor) {
  if (cursor.current.id == 0) return btrieve::kInvalidPositioning;
  const int status = file.Delete(cursor.current);
  if (status == btrieve::kSuccess) cursor.current.id = 0;  // the rest belongs to the place, too
  return status;
}

}  // namespace

int WriteRecord(const Call& call, RecordFile& file, Cursor& cursor) {
  switch (call.operation) {
    case btrieve::kInsert:
      return Insert(call, file, cursor);
    case btrieve::kUpdate:
      return Update(call, file, cursor);
    default:
      return Delete(file, cursor);
  }
}

}  // namespace recordmanager
