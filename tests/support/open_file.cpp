#include "support/open_file.h"

#include <gtest/gtest.h>

#include <cstring>

#include "support/record_managers.h"

namespace qlx99::tests {
namespace {

constexpr std::uint16_t kPageSize = 4096;

btrieve::KeyDescription Describe(const Key& key) {
  btrieve::KeyDescription description{};
  description.position = static_cast<std::uint16_t>(key.field.offset + 1);
  description.length = key.field.width;
  description.flags = btrieve::kKeyExtendedType;
  description.extendedType =
      key.field.kind == FieldKind::kText ? btrieve::kStringKey : btrieve::kIntegerKey;
  if (key.kind == Key::kAutoincrement) {
    description.extendedType = btrieve::kAutoincrementKey;
  } else {
    description.flags |= btrieve::kKeyModifiable;
  }
  if (key.kind == Key::kDuplicates) description.flags |= btrieve::kKeyDuplicates;
  description.keyNumber = key.number;
  return description;
}

std::string Describe(const RecordLayout& layout) {
  btrieve::FileDescription file{};
  file.recordLength = layout.file.length;
  file.pageSize = kPageSize;
  file.keyCount = static_cast<std::uint8_t>(layout.keys.size());
  std::string description(sizeof file, '\0');
  std::memcpy(description.data(), &file, sizeof file);
  for (const Key& key : layout.keys) {
    const btrieve::KeyDescription one = Describe(key);
    description.append(reinterpret_cast<const char*>(&one), sizeof one);
  }
  return description;
}

}  // namespace

void OpenFile::Create(const RecordLayout& layout, const std::filesystem::path& folder) {
  std::string path = (folder / layout.file.name).string();
  path.resize(btrieve::kMaxKeyLength);
  std::string description = Describe(layout);
  std::array<std::byte, btrieve::kPositionBlockSize> positionBlock{};
  auto length = static_cast<ULONG>(description.size());
  EXPECT_EQ(EmbeddedCall()(btrieve::kCreate, positionBlock.data(), description.data(), &length,
                           path.data(), static_cast<BYTE>(path.size()), btrieve::kCreateOver),
            btrieve::kSuccess)
      << layout.file.name;
}

OpenFile::OpenFile(const RecordLayout& layout, const std::filesystem::path& folder) {
  SetKey((folder / layout.file.name).string());
  std::string ownerName(1, '\0');
  EXPECT_EQ(Call(btrieve::kOpen, btrieve::kOpenNormal, ownerName), btrieve::kSuccess)
      << layout.file.name;
  SetKey("");
}

OpenFile::~OpenFile() {
  std::string nothing;
  EXPECT_EQ(Call(btrieve::kClose, 0, nothing), btrieve::kSuccess);
}

void OpenFile::SetKey(const std::string& bytes) {
  key_ = {};
  bytes.copy(key_.data(), btrieve::kMaxKeyLength);
}

int OpenFile::Call(WORD operation, int keyNumber, std::string& record) {
  auto length = static_cast<ULONG>(record.size());
  return EmbeddedCall()(operation, positionBlock_.data(), record.data(), &length, key_.data(),
                        static_cast<BYTE>(btrieve::kMaxKeyLength), static_cast<char>(keyNumber));
}

}  // namespace qlx99::tests
