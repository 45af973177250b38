#include "support/open_file.h"

#include <gtest/gtest.h>

#include "office/file_description.h"

namespace qlx99::tests {

void OpenFile::Create(const RecordLayout& layout, const std::filesystem::path& folder) {
  btrieve::Client client(testkit::EmbeddedEntryPoint());
  EXPECT_EQ(client.Create((folder / layout.file.name).string(), office::DescribeFile(layout)),
            btrieve::kSuccess)
      << layout.file.name;
}

OpenFile::OpenFile(const RecordLayout& layout, const std::filesystem::path& folder)
    : Client(testkit::EmbeddedEntryPoint()) {
  EXPECT_EQ(Open((folder / layout.file.name).string()), btrieve::kSuccess) << layout.file.name;
  SetKey("");
}

OpenFile::~OpenFile() { EXPECT_EQ(Close(), btrieve::kSuccess); }

}  // namespace qlx99::tests
