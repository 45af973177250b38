// The tool's commands that make, configure and check an installation.
#include <gmock/gmock.h>

#include <array>
#include <fstream>

#include "frame/attach.h"
#include "office/command_line.h"
#include "office/record_manager.h"
#include "sample_office.h"
#include "support/manager_script.h"
#include "support/office_programs.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

// Everything here has a registry and files of its own.
class QlxInstallations : public testing::Test {
 protected:
  PrivateRegistry registry_;
  TemporaryFolder folder_;
};

TEST_F(QlxInstallations, AreCheckedFileByFile) {
  EXPECT_THAT(Qlx("setup|" + folder_.Text()).err, HasSubstr("There is no office in"));
  const office::RecordManager manager;
  const auto create = [&](qlx99::RecordLayout layout) {
    office::TableFile::Create(manager, folder_.Path(), layout);
  };
  create(qlx99::LayoutOf<qlx99::TitleRecord>());
  auto otherLength = qlx99::LayoutOf<qlx99::CaseRecord>();
  ++otherLength.file.length;
  create(otherLength);
  auto otherKeys = qlx99::LayoutOf<qlx99::CaseTypeRecord>();
  otherKeys.file = qlx99::BankConnectionRecord::file;
  create(otherKeys);
  auto otherPlace = qlx99::LayoutOf<qlx99::FollowUpKindRecord>();
  const std::array places{qlx99::Key(0, otherPlace.fields[1], qlx99::Key::kUnique)};
  otherPlace.keys = places;
  create(otherPlace);
  std::ofstream(folder_.Path() / "ZTKONAT.KRV") << "This is not a record file.";
  std::ofstream(folder_.Path() / "ZTPART.KRV-wal") << "of a file that was moved away";
  ASSERT_EQ(Qlx("setup|" + folder_.Text()).code, office::kDone);

  const Outcome check = Qlx("office|check");
  EXPECT_EQ(check.code, office::kFailed);
  EXPECT_THAT(check.out,
              AllOf(HasSubstr("\n  ZTKOTITL.KRV    0 records of 79 bytes\n"),
                    HasSubstr("\n! ZTCASE.KRV      its records have 376 bytes, not 375; put "),
                    HasSubstr("\n! ZTBANK.KRV      it has no key 1; put "),
                    HasSubstr("\n! ZTKODOLI.KRV    key 0 does not lie over "),
                    HasSubstr("ZTKONAT.KRV: it is not a record file, or"),
                    HasSubstr("ZTPART.KRV: there is no such file; restore it"),
                    HasSubstr("\n? ZTPART.KRV      ZTPART.KRV-wal lies in the folder, but "),
                    HasSubstr("\n? DocuRoot        nothing can be made in ")));
  EXPECT_THAT(Qlx("letter|12345678").err,
              HasSubstr("ZTCASE.KRV is another file: its records have "));
}

TEST_F(QlxInstallations, AreCheckedForTheLibraryThatMacrosLoad) {
  using testkit::LibraryFile;
  ASSERT_EQ(Qlx("office|create|" + folder_.Text()).code, office::kDone);
  ASSERT_EQ(Qlx("setup|" + folder_.Text()).code, office::kDone);
  const auto check = [](const std::string& library) {
    return Qlx("office|check|--library|" + (testkit::ProductFolder() / library).string());
  };
  const std::string bits = std::to_string(sizeof(void*) * 8) + " bits, in ";
  const Outcome good = check("qlx99.dll");
  EXPECT_EQ(good.code, office::kDone) << good.out;
  EXPECT_THAT(good.out,
              AllOf(HasSubstr("  library         " + LibraryFile("qlx99")), HasSubstr(", " + bits),
                    HasSubstr(", embedded, in "), Not(HasSubstr("\n? "))));
  const std::string alone = folder_.Text() + "/" + LibraryFile("qlx99");
  std::filesystem::copy_file(testkit::ProductFolder() / LibraryFile("qlx99"), alone);
  EXPECT_THAT(Qlx("office|check|--library|" + alone).out,
              HasSubstr("\n? record manager  it does not lie beside the library"));
  const Outcome missing = check("qlx98.dll");
  EXPECT_EQ(missing.code, office::kFailed);
  EXPECT_THAT(missing.out, AllOf(HasSubstr("! library         "), HasSubstr("is not there")));
  EXPECT_THAT(check("atbtrv32.dll").out, HasSubstr(", has no function "));
  EXPECT_THAT(check("").out, HasSubstr(" cannot be loaded: it is a folder. "));
}

TEST_F(QlxInstallations, AreCheckedForARecordManagerThatMayWrite) {
  using namespace qlx99::tests;
  ASSERT_EQ(Qlx("office|create|" + folder_.Text()).code, office::kDone);
  ASSERT_EQ(Qlx("setup|" + folder_.Text()).code, office::kDone);
  FoundManagers managers;
  managers.Are({{"w3btrv7", PlacedManager::kWithoutBtrCallId}});
  EXPECT_THAT(Qlx("office|check").out,
              HasSubstr("is no record manager: it has no entry point BTRCALLID. Install "));
  UnloadRecordManager("w3btrv7.dll");
  ManagerScript manager(managers);
  manager.Answers(btrieve::kOpen, "ZTUSER.KRV", btrieve::kPermissionError);
  manager.Answers(btrieve::kOpen, "ZTCASE.KRV", btrieve::kLogError);
  EXPECT_THAT(Qlx("office|check").out,
              AllOf(HasSubstr("ZTUSER.KRV: it may not be written; check the "),
                    HasSubstr("ZTCASE.KRV: what lies beside it (its name with ")));
  manager.Forget();
  manager.Answers(btrieve::kOpen, "ZTHISTO.KRV", btrieve::kPermissionError);
  const Outcome letter = Qlx("letter|12345678");
  EXPECT_EQ(letter.code, office::kFailed);
  EXPECT_THAT(letter.err, HasSubstr("ZTHISTO.KRV: it may not be written"));
  manager.Forget();
  EXPECT_EQ(Qlx("office|show|ZTUSER").code, office::kDone);
  EXPECT_EQ(manager.Calls().front().keyNumber, btrieve::kOpenReadOnly);
  UnloadRecordManager("w3btrv7.dll");
}

TEST(QlxConfiguration, IsCheckedForWhatItsKindNeeds) {
  using namespace qlx99::tests;
  Office its;
  const OfficePrograms programs(its);
  qlx99::AttachLibrary(GetModuleHandleA(nullptr));
  const Outcome whole = Qlx("office|check");
  EXPECT_EQ(whole.code, office::kDone);
  EXPECT_THAT(whole.out,
              HasSubstr("  ProgramName     delegated, as \"telq32.exe\" names TELQ32; "));
  for (const std::string& file : {std::string("telq32.exe"), LibraryFile("qlx02")}) {
    std::filesystem::remove(programs.Bin32() / file);
  }
  EXPECT_THAT(Qlx("office|check").out,
              AllOf(HasSubstr("telq32.exe; connect its drive, "),
                    HasSubstr("qlx02.dll cannot be loaded (error 126); ")));
  its.IsNotConfigured("MappingRoot");
  EXPECT_THAT(Qlx("office|check").out, HasSubstr("! MappingRoot     is not set below "));
  EXPECT_EQ(Qlx("call|UserInit").out, "kind: delegated\nresult: 0  (number of users)\n");
}

TEST(QlxConfiguration, IsCheckedForTheFolderOfTheRecords) {
  qlx99::tests::Office its;
  qlx99::AttachLibrary(GetModuleHandleA(nullptr));
  its.IsNotConfigured("DataRoot");
  EXPECT_THAT(Qlx("office|check").out, HasSubstr("! DataRoot        is not set below "));
  for (const char* command : {"letter|12345678", "followups|12345678", "office|show|ztcase"}) {
    EXPECT_THAT(Qlx(command).err, HasSubstr("No office is configured: DataRoot is not set below "));
  }
  its.IsConfigured("DataRoot", std::string(200, '/'));
  EXPECT_THAT(Qlx("office|check").out,
              HasSubstr("! DataRoot        has 200 characters; the library reads at most 199. "));
  EXPECT_THAT(Qlx("letter|12345678").err, HasSubstr("DataRoot has 200 characters; "));
  const TemporaryFolder empty;
  its.IsConfigured("DataRoot", empty.Text());
  EXPECT_THAT(Qlx("office|check").out,
              AllOf(HasSubstr("! DataRoot        there is no record file (ZT*.KRV) in the folder "),
                    Not(HasSubstr("ZTUSER"))));
  its.IsConfigured("DataRoot", "/nowhere");
  for (const char* command : {"letter|12345678", "office|copy|backup"}) {
    EXPECT_THAT(Qlx(command).err, HasSubstr("There is no folder /nowhere, which DataRoot "));
  }
  EXPECT_THAT(
      Qlx("office|check").out,
      AllOf(HasSubstr("  ProgramName     local, as it is not set; "),
            HasSubstr("! DataRoot        there is no folder /nowhere; connect its drive, ")));
  its.IsConfigured("ProgramName", "c:\\programs\\stelvora.exe");
  EXPECT_THAT(Qlx("office|check").out,
              HasSubstr("local, as \"c:\\programs\\stelvora.exe\" does not name TELQ32; "));
}

TEST_F(QlxInstallations, ReplaceEachOtherOnlyWhenAsked) {
  const TemporaryFolder second;
  for (const std::string& folder : {folder_.Text(), second.Text()}) {
    ASSERT_EQ(Qlx("office|create|" + folder).code, office::kDone);
  }
  for (int i = 0; i < 2; ++i) EXPECT_EQ(Qlx("setup|" + folder_.Text()).code, office::kDone);
  const Outcome refused = Qlx("setup|" + second.Text());
  EXPECT_EQ(refused.code, office::kFailed);
  EXPECT_THAT(refused.err, AllOf(HasSubstr("\n  DataRoot = " + folder_.Text() + "\n"),
                                 HasSubstr("Nothing was changed. `qlx setup " + second.Text())));
  EXPECT_THAT(Qlx("setup|no office").err, HasSubstr("`qlx office create \"no office\"` makes"));
  EXPECT_THAT(Qlx("office|check").out, HasSubstr("DataRoot        " + folder_.Text() + "\n"));
  EXPECT_THAT(Qlx("setup|--force|" + second.Text()).out,
              HasSubstr("DataRoot = " + second.Text() + "  (before: " + folder_.Text() + ")\n"));
}

// Whose letters need not be those of the system's own conversion.
TEST_F(QlxInstallations, LieInAnyFolderThatTheCodePageCanName) {
  const std::string office = folder_.Text() + "/Kanzlei – Köln €";
  for (const std::string& command :
       {"office|create|" + office, "setup|" + office, std::string("office|check"),
        std::string("letter|12345678"), std::string("followups|12345678"),
        std::string("office|show|ZTCASE"), "office|copy|" + office + "/„Kopie“"}) {
    const Outcome outcome = Qlx(command);
    EXPECT_EQ(outcome.code, office::kDone) << command << outcome.out << outcome.err;
    EXPECT_THAT(outcome.out, Not(HasSubstr("\n? "))) << command;
  }
  EXPECT_THAT(Qlx("office|check").out, HasSubstr("Kanzlei – Köln €\n"));
}

}  // namespace
