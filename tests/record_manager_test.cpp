// How the library loads and calls the record manager, seen from the record manager's side.
#include "support/export_test.h"

namespace qlx99::tests {
namespace {

namespace fs = std::filesystem;

using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::SizeIs;

constexpr int kMostAttempts = 40001;

const MessageBox kIncomplete{
    "Funktionen der Datenbank Schnittstelle Pervasie.SQL / Btrieve konnten nicht gefunden werden",
    "Systemmeldung", 0};
const MessageBox kBusy{
    "Die max. Anzahl von Versuchen die Datenbank-Aktion durchzuführen ist erreicht.",
    "Systemmeldung", 0};

using LoadingTest = ExportTest;

TEST_F(LoadingTest, TakesTheFirstNameThatIsThereAndLooksAgainWhileThereIsNone) {
  const std::vector<std::string> names{"w3btrv7", "wbtrv32", "atbtrv32"};
  UnloadRecordManagers();  // tests of the embedded one leave it loaded
  for (std::size_t first = 0; first < names.size(); ++first) {
    managers.Are({});
    EXPECT_EQ(library->UserInit(), 0);
    EXPECT_THAT(user.Messages(), SizeIs(1));
    std::vector<PlacedManager> placed;
    for (std::size_t i = first; i < names.size(); ++i) placed.push_back({names[i]});
    managers.Are(placed);
    EXPECT_EQ(library->UserInit(), 0);
    EXPECT_THAT(user.Messages(), ElementsAre(CannotOpen("ZTUSER.KRV")));  // it can do nothing
    for (std::size_t i = 0; i < names.size(); ++i) {
      const bool loaded = GetModuleHandleA((names[i] + ".dll").c_str()) != nullptr;
      EXPECT_EQ(loaded, i == first) << names[i] << " while " << names[first] << " is there";
    }
    library.Free();
    UnloadRecordManagers();
  }
}

// A document's folder is the current one when it is opened, and so is that of one that came by
// mail.
TEST_F(LoadingTest, TakesTheOneBesideTheLibraryAndNoneInTheCurrentFolder) {
  const fs::path folderBefore = fs::current_path();
  const fs::path mail = office.Folder() / "mail";
  fs::create_directories(mail);
  for (const char* file : {"w3btrv7", "planted"}) {
    fs::copy(ProgramFolder() / LibraryFile("scripted_manager"), mail / LibraryFile(file));
  }
  const auto canBeLoaded = [](const char* name) {
    HMODULE loaded = LoadLibraryA(name);
    return loaded != nullptr && FreeLibrary(loaded) != FALSE;
  };
  UnloadRecordManagers();
  for (const char* hosts : {static_cast<const char*>(nullptr), ""}) {
    managers.Are({});
    fs::current_path(mail);
    SetDllDirectoryA(hosts);
    const bool hostFindsIt = canBeLoaded("planted.dll");
    EXPECT_EQ(library->UserInit(), 0);
    EXPECT_THAT(user.Messages(), ElementsAre(NoRecordManager()));
    managers.Are({{"atbtrv32"}});
    SetDllDirectoryA(hosts);
    EXPECT_EQ(library->UserInit(), 0);
    EXPECT_THAT(user.Messages(), ElementsAre(CannotOpen("ZTUSER.KRV")));
    EXPECT_EQ(GetModuleHandleA("w3btrv7.dll"), nullptr);

    // The host's folder and its own rule for it are what they were.
    EXPECT_TRUE(fs::equivalent(fs::current_path(), mail));
    EXPECT_EQ(canBeLoaded("planted.dll"), hostFindsIt);
    fs::current_path(folderBefore);
    library.Free();
    UnloadRecordManagers();
  }
}

TEST_F(LoadingTest, NeedsBothEntryPointsAtEachCall) {
  for (const char* made : {PlacedManager::kWithoutBtrCall, PlacedManager::kWithoutBtrCallId}) {
    managers.Are({{"w3btrv7", made}, {"wbtrv32"}});  // a complete one behind it is no help
    EXPECT_EQ(library->UserInit(), 0);
    EXPECT_EQ(library->GetDokuNr("12345678"), 0);
    EXPECT_THAT(user.Messages(), ElementsAre(kIncomplete, kIncomplete));
    library.Free();
    UnloadRecordManagers();
  }
}

TEST_F(LoadingTest, LeavesTheRecordManagerLoadedAndTheProcessItsErrorMode) {
  constexpr UINT kMode = SEM_NOOPENFILEERRORBOX;
  const UINT before = SetErrorMode(kMode);
  EXPECT_EQ(library->UserInit(), 0);
  EXPECT_EQ(SetErrorMode(before), kMode);
  ReleaseEmbedded();
  library.Free();
  EXPECT_NE(GetModuleHandleA("atbtrv32.dll"), nullptr);
}

class CallingTest : public ScriptedExportTest {
 protected:
  void SetUp() override { office.Has<UserRecord>("number: 17"); }
};

TEST_F(CallingTest, OpensInTheNormalModeAndMakesPlainCallsWithTheRecordsLength) {
  EXPECT_EQ(library->UserInit(), 1);
  EXPECT_THAT(manager.Calls(), Each(Field(&ManagerCall::plain, true)));
  EXPECT_THAT(manager.Calls(), Each(Field(&ManagerCall::keyLength, 255)));
  EXPECT_EQ(manager.Calls().at(1).dataLength, 924U);
  EXPECT_EQ(manager.Calls().at(2).dataLength, 924U);
  const ManagerCall& open = manager.Calls().at(0);
  EXPECT_EQ(open.data, std::string(1, '\0')) << "an empty owner name";
  EXPECT_EQ(open.keyNumber, 0);
}

TEST_F(CallingTest, TakesTheLongestDataPathAsItIsStored) {
  for (const std::size_t length : {200U, 201U}) {
    office.IsConfiguredWithBytes("DataRoot", std::string(length, 'x'));  // unterminated
    EXPECT_EQ(library->UserInit(), 0);
  }
  EXPECT_THAT(user.Messages(), ElementsAre(CannotOpen("ZTUSER.KRV"), NoDataPath("User")));
  EXPECT_EQ(manager.Calls().at(0).path, std::string(200, 'x') + "\\ZTUSER.KRV");
}

TEST_F(CallingTest, TriesWhatIsBusyAgainAndNothingElse) {
  for (const int status : {77, 81, 84, 85}) {
    manager.Forget();
    for (const WORD operation :
         {btrieve::kOpen, btrieve::kGetFirst, btrieve::kGetNext, btrieve::kClose}) {
      manager.Answers(operation, "ZTUSER.KRV", status, 3);
    }
    EXPECT_EQ(library->UserInit(), 1) << status;
    EXPECT_THAT(manager.Calls(), SizeIs(4 * (3 + 1))) << status;
  }
  for (const int status : {1, 2, 3, 9, 46, 76, 78, 79, 80, 82, 83, 86, 94}) {
    manager.Forget();
    manager.Answers(btrieve::kGetFirst, "ZTUSER.KRV", status);
    EXPECT_EQ(library->UserInit(), 0);
    EXPECT_THAT(manager.Calls(), SizeIs(3)) << status;
  }
}

// Attempts are counted before their status is looked at: when the very last one succeeds, the user
// hears of it all the same.
TEST_F(CallingTest, GivesUpAfterTheLastAttemptAndSaysSo) {
  const struct {
    WORD operation;
    int status;
    int times;
    int users;
    std::vector<MessageBox> messages;
    std::size_t calls;
  } cases[] = {
      {btrieve::kOpen, 85, -1, 0, {kBusy, CannotOpen("ZTUSER.KRV")}, kMostAttempts},
      {btrieve::kGetFirst, 84, -1, 0, {kBusy}, kMostAttempts + 2},
      {btrieve::kClose, 81, -1, 1, {kBusy, CannotClose("ZTUSER.KRV")}, kMostAttempts + 3},
      {btrieve::kGetFirst, 77, kMostAttempts - 1, 1, {kBusy}, kMostAttempts + 3},
      {btrieve::kGetFirst, 77, kMostAttempts - 2, 1, {}, kMostAttempts + 2},
  };
  for (const auto& [operation, status, times, users, messages, calls] : cases) {
    manager.Forget();
    manager.Answers(operation, "ZTUSER.KRV", status, times);
    EXPECT_EQ(library->UserInit(), users);
    EXPECT_EQ(user.Messages(), messages);
    EXPECT_EQ(manager.Calls().size(), calls);
  }
}

}  // namespace
}  // namespace qlx99::tests
