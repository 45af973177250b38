// What the library decides when it is attached, and the gate that every export passes first.
#include "support/export_test.h"

namespace qlx99::tests {
namespace {

constexpr std::int32_t kLocal = -1;     // what GetAdressTyp answers by itself
constexpr std::int32_t kDelegated = 0;  // what it answers where there is nobody to delegate to

using AttachTest = ExportTest;

TEST_F(AttachTest, ProgramNameDecidesTheInstallationKind) {
  const struct {
    std::string storedBytes;
    std::int32_t kind;
  } cases[] = {
      {{"TELQ32\0", 7}, kDelegated},
      {{"telq32\0", 7}, kDelegated},
      {{"c:\\apps\\Telq32.exe\0", 19}, kDelegated},
      {{"xxTeLq32xx\0", 11}, kDelegated},
      {"c:\\programs\\ttelq32t", kDelegated},  // 20 bytes, all that are read, unterminated
      {"c:\\programs\\x\\telq32", kDelegated},
      {{"c:\\programs\\telq32.exe\0", 23}, kLocal},  // too long to be read
      {{"stelvora.exe\0", 13}, kLocal},
      {{"telq3\0", 6}, kLocal},
      {{"tel q32\0", 8}, kLocal},
      {{"x\0telq32\0", 9}, kLocal},  // behind the text's end
      {{"\0", 1}, kLocal},
      {"", kLocal},
  };
  for (const auto& [storedBytes, kind] : cases) {
    SCOPED_TRACE(storedBytes);
    office.IsConfiguredWithBytes("ProgramName", storedBytes);
    EXPECT_EQ(library->GetAdressTyp("1", "2"), kind);
    library.Free();
  }
  office.IsNotConfigured("ProgramName");
  EXPECT_EQ(library->GetAdressTyp("1", "2"), kLocal);
}

TEST_F(AttachTest, InstallationKindStaysUntilTheLibraryIsLoadedAgain) {
  EXPECT_EQ(library->GetAdressTyp("1", "2"), kLocal);
  office.IsConfigured("ProgramName", "telq32");
  EXPECT_EQ(library->GetAdressTyp("1", "2"), kLocal);
  library.Free();
  EXPECT_EQ(library->GetAdressTyp("1", "2"), kDelegated);
}

TEST_F(AttachTest, ExportsOfTheDelegatedKindDoNothingInTheLocalOne) {
  managers.Are({});
  EXPECT_EQ(library->GetAdressTyp(nullptr, nullptr), -1);
  EXPECT_EQ(library->GetAdrFieldsMain("1", nullptr, "3", ""), -1);
}

TEST_F(AttachTest, NullArgumentsAreHarmlessInTheLocalKind) {
  EXPECT_EQ(library->UserNext(nullptr, nullptr), 0);
  EXPECT_EQ(library->SLesenDLL(nullptr, nullptr), 0);
  EXPECT_EQ(library->BListeInit(nullptr), 0);
  EXPECT_EQ(library->BListeNext(nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(library->GetDokuNr(nullptr), 1);  // of the counter for unknown cases
}

}  // namespace
}  // namespace qlx99::tests
