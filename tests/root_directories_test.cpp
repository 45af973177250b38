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
  const std::string path = "C:\\Kanzlei Müller\\Akten 1";
  office.IsConfigured(GetParam().valueName, Ansi(path));
  std::string width = Ansi(path);
  width.resize(260, '\0');
  const struct {
    std::int32_t length;
    std::size_t copied;
  } cases[] = {{10, 10},
               {24, 24},
               {25, 25},
               {259, 259},
               {260, 260},
               {261, 260},
               {300, 260},
               {1000, 260},
               {1, 1},
               {0, 0},
               {-1, 0},
               {Limits::min(), 0},
               {Limits::max(), 260}};
  for (const auto& [length, copied] : cases) {
    SCOPED_TRACE(length);
    CallerBuffer buffer;
    EXPECT_EQ(Call(length, buffer), GetParam().resultForMissingFolder);
    EXPECT_EQ(buffer.Bytes().substr(0, copied), width.substr(0, copied));
    EXPECT_EQ(buffer.Bytes().find_first_not_of(' ', copied), std::string::npos);
  }
}

TEST_P(RootDirectoryTest, WritesIntoABufferOfJustThatSize) {
  office.IsConfigured(GetParam().valueName, "C:\\Akten");
  for (const std::int32_t length : {1, 8, 9, 260}) {
    CallerBuffer buffer(static_cast<std::size_t>(length));
    EXPECT_EQ(Call(length, buffer), GetParam().resultForMissingFolder);
  }
}

TEST_P(RootDirectoryTest, TakesAValueAsItIsStored) {
  office.IsConfiguredWithBytes(GetParam().valueName, std::string(260, 'x'));  // unterminated
  CallerBuffer buffer;
  EXPECT_EQ(Call(1000, buffer), GetParam().resultForMissingFolder);
  EXPECT_THAT(buffer, HoldsRecordOnly(std::string(260, 'x')));
}

TEST_P(RootDirectoryTest, GivesZeroForAValueThatCannotBeRead) {
  CallerBuffer buffer;
  EXPECT_EQ(Call(260, buffer), 0);
  office.IsConfiguredWithBytes(GetParam().valueName, std::string(261, 'x'));
  EXPECT_EQ(Call(260, buffer), 0);
  EXPECT_THAT(buffer, IsUntouched());
}

TEST_P(RootDirectoryTest, GivesZeroForANullBuffer) {
  office.IsConfigured(GetParam().valueName, office.Folder().string());
  EXPECT_EQ(Call(260, nullptr), 0);
}

TEST_P(RootDirectoryTest, GivesOneForAFolderThatIsThere) {
  const std::string folder = office.Folder().string();
  office.IsConfigured(GetParam().valueName, folder);
  CallerBuffer buffer;
  EXPECT_EQ(Call(260, buffer), 1);
  EXPECT_EQ(buffer.Record(), folder);
  EXPECT_EQ(Call(3, buffer), 1);  // the folder counts, not what was copied of its name
}

}  // namespace
}  // namespace qlx99::tests
