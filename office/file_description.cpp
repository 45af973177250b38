#include "office/file_description.h"

#include <array>
#include <bit>

#include "recordmanager/btrieve.h"

namespace office {
namespace {

std::uint16_t FlagsOf(const qlx99::Key& key) {
  const auto duplicates =
      key.kind == qlx99::Key::kDuplicates ? btrieve::kKeyDuplicates : std::uint16_t{0};
  // The number that the record manager assigns is a record's name for good; all else may change.
  const auto modifiable =
      key.kind == qlx99::Key::kAutoincrement ? std::uint16_t{0} : btrieve::kKeyModifiable;
  return static_cast<std::uint16_t>(btrieve::kKeyExtendedType | duplicates | modifiable);
}

std::uint8_t TypeOf(const qlx99::Key& key) {
  if (key.kind == qlx99::Key::kAutoincrement) return btrieve::kAutoincrementKey;
  return key.field.kind == qlx99::FieldKind::kInt32 ? btrieve::kIntegerKey : btrieve::kStringKey;
}

template <class Part>
void Append(const Part& part, std::string& description) {
  const auto bytes = std::bit_cast<std::array<char, sizeof part>>(part);
  description.append(bytes.begin(), bytes.end());
}

}  // namespace

std::string DescribeFile(const qlx99::RecordLayout& layout) {
  constexpr std::uint16_t kPageSize = 4096;
  btrieve::FileDescription file{};
  file.recordLength = layout.file.length;
  file.pageSize = kPageSize;
  file.keyCount = static_cast<std::uint8_t>(layout.keys.size());
  file.fileFlags = btrieve::kKeyNumbersGiven;
  std::string description;
  Append(file, description);
  for (const qlx99::Key& key : layout.keys) {
    btrieve::KeyDescription one{};
    one.position = static_cast<std::uint16_t>(key.field.offset + 1);
    one.length = key.field.width;
    one.flags = FlagsOf(key);
    one.extendedType = TypeOf(key);
    one.keyNumber = key.number;
    Append(one, description);
  }
  return description;
}

}  // namespace office
