#include "support/open_file.h"

#include <gtest/gtest.h>

#include "office/file_description.h"
#include "support/embedded_manager.h"

namespace qlx99::tests {

void OpenFile::Create(const RecordLayout& layout, const std::filesystem::path& folder) {
  std::string path = (folder / layout.file.name).string();
  path.resize(btrieve::kMaxKeyLength);
  std::string description = office::DescribeFile(layout);
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
