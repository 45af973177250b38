#include "office/copied_file.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <tuple>
#include <vector>

#include "office/failure.h"

namespace office {
namespace {

constexpr std::size_t kRecordsPerTransaction = 500;

struct FileKey {
  int number = 0;
  bool hasDuplicates = false;
  bool isModifiable = false;
  std::vector<btrieve::KeyDescription> segments;
  // Whose change gives a record another value of this key alone.
  std::optional<std::size_t> ownByte = std::nullopt;

  bool Covers(std::size_t byte) const {
    return std::ranges::any_of(segments, [byte](const btrieve::KeyDescription& segment) {
      return byte + 1 >= segment.position && byte + 1 < segment.position + segment.length;
    });
  }

  std::string ValueIn(const std::string& record) const {
    std::string value;
    for (const auto& segment : segments) {
      value += record.substr(segment.position - 1U, segment.length);
    }
    return value;
  }

  // A record with another value. Only for a key with a byte of its own.
  std::string Moved(std::string record) const {
    char& byte = record.at(ownByte.value());
    byte = static_cast<char>(~byte);
    return record;
  }
};

// At least one.
std::vector<FileKey> KeysOf(const btrieve::FileFacts& facts) {
  const bool numbersGiven = (facts.file.fileFlags & btrieve::kKeyNumbersGiven) != 0;
  std::vector<FileKey> keys;
  bool isNew = true;
  for (const btrieve::KeyDescription& segment : facts.keys) {
    if (isNew) {
      keys.push_back({.number = numbersGiven ? segment.keyNumber : static_cast<int>(keys.size()),
                      .hasDuplicates = (segment.flags & btrieve::kKeyDuplicates) != 0,
                      .isModifiable = (segment.flags & btrieve::kKeyModifiable) != 0,
                      .segments = {}});
    }
    keys.back().segments.push_back(segment);
    isNew = (segment.flags & btrieve::kKeySegmented) == 0;
  }
  if (keys.empty()) throw Failure("A file without keys cannot be copied.");
  return keys;
}

// The first byte of the key that lies in none of the others.
std::optional<std::size_t> ByteOutside(const FileKey& key, const std::vector<FileKey>& others) {
  for (const btrieve::KeyDescription& segment : key.segments) {
    for (std::size_t byte = segment.position - 1U; key.Covers(byte); ++byte) {
      const auto covers = [byte](const FileKey& other) { return other.Covers(byte); };
      if (std::ranges::none_of(others, covers)) return byte;
    }
  }
  return std::nullopt;
}

// Records of one value stand in the order in which they were given it. They are copied along the
// first of these keys, which keeps that one's order. The others are keys with duplicates whose
// order has to be restored. That changes their values, so a key that must not be changed comes
// first, and no byte of a key whose order is there already may be touched.
std::vector<FileKey> KeysWithAnOrder(const std::vector<FileKey>& keys) {
  std::vector<FileKey> ordered;
  std::ranges::copy_if(keys, std::back_inserter(ordered), &FileKey::hasDuplicates);
  std::ranges::stable_sort(ordered, {}, &FileKey::isModifiable);
  const bool keepsOne = !ordered.empty() && !ordered.front().isModifiable;
  if (ordered.size() != 1 && !keepsOne) ordered.insert(ordered.begin(), keys.front());

  std::vector<FileKey> kept{ordered.front()};
  std::ranges::copy_if(keys, std::back_inserter(kept), std::not_fn(&FileKey::isModifiable));
  for (FileKey& key : std::span(ordered).subspan(1)) {
    key.ownByte = ByteOutside(key, kept);
    kept.push_back(key);
  }
  return ordered;
}

auto UniqueKeyIn(const std::vector<FileKey>& keys) {
  return std::ranges::find(keys, false, &FileKey::hasDuplicates);
}

// To restore an order, each record is found by a unique key, and its value changed for a moment.
bool CanBeRestored(const FileKey& key, const std::vector<FileKey>& keys) {
  return key.ownByte && UniqueKeyIn(keys) != keys.end();
}

// Takes the records along a key, and hands them on some at a time: in a transaction of the other
// file nothing is read, as a record manager may keep all from writing what is read in one.
template <class Body>
void ForEachBatch(TableFile& file, const FileKey& key, const Body& body) {
  auto record = file.First(key.number);
  while (record) {
    std::vector<std::string> batch;
    for (; record && batch.size() < kRecordsPerTransaction; record = file.Next(key.number)) {
      batch.push_back(std::move(*record));
    }
    body(batch);
  }
}

// Gives all records of the copy their value of the key anew, in the order of the file.
void RestoreOrder(const RecordManager& manager, TableFile& source, TableFile& copy,
                  const FileKey& key, const FileKey& unique) {
  ForEachBatch(source, key, [&](std::vector<std::string>& batch) {
    Transaction transaction(manager);
    for (std::string& record : batch) {
      if (!copy.Find(unique.number, unique.ValueIn(record))) continue;
      std::string moved = key.Moved(record);
      std::ignore = copy.TryUpdate(unique.number, moved) && copy.TryUpdate(unique.number, record);
    }
    transaction.Commit();
  });
}

// Returns the number of records along the key; nothing when they are not the same ones.
std::optional<std::uint32_t> CountIfEqual(TableFile& source, TableFile& copy, const FileKey& key,
                                          const CopiedFile::Step& step) {
  std::uint32_t count = 0;
  auto record = source.First(key.number);
  auto copied = copy.First(key.number);
  for (; record && record == copied; ++count) {
    step();
    record = source.Next(key.number);
    copied = copy.Next(key.number);
  }
  return record == copied ? std::optional(count) : std::nullopt;
}

}  // namespace

void CopiedFile::Copy(const Step& step) const {
  TableFile source = OpenSource();
  const std::string description = source.Description();
  TableFile::CreateOver(*to_, copy_, btrieve::DescribeAnother(description));
  TableFile copy = OpenCopy();
  const std::vector<FileKey> keys = KeysOf(btrieve::FactsIn(description));
  const std::vector<FileKey> ordered = KeysWithAnOrder(keys);
  ForEachBatch(source, ordered.front(), [&](std::vector<std::string>& batch) {
    Transaction transaction(*to_);
    // A record that somebody gives another value of the key meanwhile may come twice.
    for (std::string& record : batch) std::ignore = copy.TryInsert(record);
    transaction.Commit();
    for (std::size_t i = 0; i < batch.size(); ++i) step();
  });
  for (const FileKey& key : std::span(ordered).subspan(1)) {
    if (!CanBeRestored(key, keys) || CountIfEqual(source, copy, key, [] {})) continue;
    RestoreOrder(*to_, source, copy, key, *UniqueKeyIn(keys));
  }
}

bool CopiedFile::KeepsItsOrder() const {
  const std::vector<FileKey> keys = KeysOf(OpenSource().Facts());
  const std::vector<FileKey> ordered = KeysWithAnOrder(keys);
  return std::ranges::all_of(std::span(ordered).subspan(1),
                             [&](const FileKey& key) { return CanBeRestored(key, keys); });
}

bool CopiedFile::IsComplete(const Step& step) const {
  TableFile source = OpenSource();
  TableFile copy = OpenCopy();
  const btrieve::FileFacts facts = source.Facts();
  const std::vector<FileKey> ordered = KeysWithAnOrder(KeysOf(facts));
  const auto count = CountIfEqual(source, copy, ordered.front(), step);
  const std::uint32_t all = facts.file.recordCount;
  return count == all &&
         std::ranges::all_of(std::span(ordered).subspan(1), [&](const FileKey& key) {
           return CountIfEqual(source, copy, key, [] {}) == count;
         });
}

}  // namespace office
