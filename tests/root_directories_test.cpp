// GetDocuRoot and GetProgramRoot.
#include <limits>

#include "support/export_test.h"

namespace qlx99::tests {
namespace {

using Limits = std::numeric_limits<std::int32_t>;

struct RootExport {
  const char* valueName;
  decltype(Exports::GetDocuRoot) Exports::*function;
  std::int32_t resultForMissingFolder;
};

class RootDirectoryTest : public ExportTest, public testing::WithParamInterface<RootExport> {
 protected:
  std::int32_t Call(std::int32_t length, char* buffer) {
    return (library.operator->()->*GetParam().function)(length, buffer);
  }
};

INSTANTIATE_TEST_SUITE_P(Of, RootDirectoryTest,
                         testing::Values(RootExport{"DocuRoot", &Exports::GetDocuRoot, 1},
                                         RootExport{"ProgramRoot", &Exports::GetProgramRoot, 0}),
                         [](const auto& root) { return std::string(root.param.valueName); });

TEST_P(RootDirectoryTest, CopiesAsManyBytesAsAskedForOfAZeroFilledWidth) {
  managers.Are({});  // no record manager is needed
  // An ordinary one, and the longest, unterminated.
  for (const std::string& bytes :
       {Ansi("C:\\Kanzlei Müller\\Akten 1") + '\0', std::string(260, 'x')}) {
    office.IsConfiguredWithBytes(GetParam().valueName, bytes);
    std::string width = bytes;
    width.resize(260, '\0');
    for (const std::int32_t length : {Limits::min(), -1, 0, 1, 25, 259, 260, 261, Limits::max()}) {
      SCOPED_TRACE(length);
      const auto copied = static_cast<std::size_t>(std::clamp(length, 0, 260));
      CallerBuffer buffer;
      CallerBuffer justThatSize(copied);
      EXPECT_EQ(Call(length, buffer), GetParam().resultForMissingFolder);
      EXPECT_EQ(Call(length, justThatSize), GetParam().resultForMissingFolder);
      EXPECT_EQ(buffer.Bytes(), width.substr(0, copied) + std::string(1024 - copied, ' '));
    }
  }
}

TEST_P(RootDirectoryTest, GivesOneForAFolderThatIsThereAndZeroForNoValue) {
  CallerBuffer buffer;
  EXPECT_EQ(Call(260, buffer), 0);
  office.IsConfiguredWithBytes(GetParam().valueName, std::string(261, 'x'));
  EXPECT_EQ(Call(260, buffer), 0);
  EXPECT_EQ(buffer.Record(), "");
  const std::string folder = office.Folder().string();
  office.IsConfigured(GetParam().valueName, folder);
  EXPECT_EQ(Call(260, nullptr), 0);
  EXPECT_EQ(Call(260, buffer), 1);
  EXPECT_EQ(buffer.Record(), folder);
  EXPECT_EQ(Call(3, buffer), 1) << "the folder counts, not what was copied of its name";
}

}  // namespace
}  // namespace qlx99::tests
