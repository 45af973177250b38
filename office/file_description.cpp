#include "office/file_description.h"

#include <vector>

#include "btrieve/file_description.h"

namespace office {
namespace {

unsigned FlagsOf(const qlx99::Key& key) {
  // The number that the record manager assigns is a record's name for good; all else may change.
  if (key.kind == qlx99::Key::kAutoincrement) return 0;
  const unsigned duplicates = key.kind == qlx99::Key::kDuplicates ? btrieve::kKeyDuplicates : 0;
  return btrieve::kKeyModifiable | duplicates;
}

unsigned TypeOf(const qlx99::Key& key) {
  if (key.kind == qlx99::Key::kAutoincrement) return btrieve::kAutoincrementKey;
  return key.field.kind == qlx99::FieldKind::kInt32 ? btrieve::kIntegerKey : btrieve::kStringKey;
}

}  // namespace

std::string DescribeFile(const qlx99::RecordLayout& layout) {
  std::vector<btrieve::KeyDescription> keys;
  for (const qlx99::Key& key : layout.keys) {
    keys.push_back(
        btrieve::DescribeKey(key.field.offset, key.field.width, TypeOf(key), FlagsOf(key)));
    keys.back().keyNumber = key.number;
  }
  return btrieve::DescribeFile(layout.file.length, keys, btrieve::kKeyNumbersGiven);
}

}  // namespace office
