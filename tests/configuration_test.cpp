// What the library reads in the registry: its kind, when it is attached, and the folders that
// GetDocuRoot and GetProgramRoot deliver.
#include <limits>

#include "support/export_test.h"

namespace qlx99::tests {
namespace {

constexpr std::int32_t kLocal = -1;     // what GetAdressTyp answers by itself
constexpr std::int32_t kDelegated = 0;  // what it answers while no login can be confirmed

using AttachTest = ExportTest;

TEST_F(AttachTest, ProgramNameDecidesTheInstallationKindUntilTheLibraryIsLoadedAgain) {
  EXPECT_EQ(library->GetAdressTyp("1", "2"), kLocal) << "not configured";
  const std::pair<std::string, std::int32_t> cases[] = {
      {{"TELQ32\0", 7}, kDelegated},
      {{"c:\\apps\\xTeLq32.exe\0", 20}, kDelegated},
      {"c:\\apps\\telq32", kDelegated},  // unterminated
      {std::string(300, 'x') + "telq32", kDelegated},
      {std::string(300, 'x'), kLocal},
      {{"telq3\0", 6}, kLocal},
      {{"tel q32\0", 8}, kLocal},
      {{"x\0telq32\0", 9}, kLocal},  // behind the text's end
      {{"\0", 1}, kLocal},
      {"", kLocal},
  };
  std::int32_t before = kLocal;
  for (const auto& [storedBytes, kind] : cases) {
    office.IsConfiguredWithBytes("ProgramName", storedBytes);
    EXPECT_EQ(library->GetAdressTyp("1", "2"), before) << storedBytes;
    library.Free();
    EXPECT_EQ(library->GetAdressTyp("1", "2"), kind) << storedBytes;
    before = kind;
  }
}

using RootDirectoryTest = ExportTest;

// Of a width that is filled with zero bytes, and of which no more is touched than was asked for.
TEST_F(RootDirectoryTest, IsDeliveredAndGivesOneWhenItIsThere) {
  using Limits = std::numeric_limits<std::int32_t>;
  const struct {
    const char* value;
    decltype(Exports::GetDocuRoot) call;
    std::int32_t resultForMissingFolder;
  } roots[] = {{"DocuRoot", library->GetDocuRoot, 1}, {"ProgramRoot", library->GetProgramRoot, 0}};
  managers.Are({});  // no record manager is needed
  const std::string folder = office.Folder().string();
  for (const auto& [value, call, resultForMissingFolder] : roots) {
    SCOPED_TRACE(value);
    const std::string unterminated(260, 'x');
    for (const std::string& bytes :
         {folder + '\0', Ansi("C:\\Müller\\Akten 1") + '\0', unterminated}) {
      office.IsConfiguredWithBytes(value, bytes);
      std::string width = bytes;
      width.resize(260, '\0');
      const std::int32_t result = width.starts_with(folder) ? 1 : resultForMissingFolder;
      for (const std::int32_t length : {Limits::min(), -1, 0, 1, 25, 260, 261, Limits::max()}) {
        const auto copied = static_cast<std::size_t>(std::clamp(length, 0, 260));
        CallerBuffer buffer;
        CallerBuffer justThatSize(copied);
        EXPECT_EQ(call(length, buffer), result) << length;
        EXPECT_EQ(call(length, justThatSize), result) << length;
        EXPECT_EQ(buffer.Bytes(), width.substr(0, copied) + std::string(1024 - copied, ' '));
      }
    }
    EXPECT_EQ(call(260, nullptr), 0);
    office.IsConfiguredWithBytes(value, unterminated + 'x');
    CallerBuffer buffer;
    EXPECT_EQ(call(260, buffer), 0) << "none";
    EXPECT_EQ(buffer.Record(), "");
  }
}

}  // namespace
}  // namespace qlx99::tests
