// How the library loads and calls the record manager, seen from the record manager's side.
#include "followups/follow_up_file.h"
#include "support/export_test.h"
#include "users/user_file.h"

namespace qlx99::tests {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::SizeIs;

constexpr int kMostAttempts = 40001;

const MessageBox kNotLoaded{
    "Die Datenbank Schnittstelle Pervasie.SQL / Btrieve konnte nicht geladen werden",
    "Systemmeldung", 0};
const MessageBox kIncomplete{
    "Funktionen der Datenbank Schnittstelle Pervasie.SQL / Btrieve konnten nicht gefunden werden",
    "Systemmeldung", 0};
const MessageBox kBusy{
    "Die max. Anzahl von Versuchen die Datenbank-Aktion durchzuführen ist erreicht.",
    "Systemmeldung", 0};

using LoadingTest = ExportTest;

TEST_F(LoadingTest, TakesTheFirstNameThatIsThere) {
  const std::vector<std::string> names{"w3btrv7", "wbtrv32", "atbtrv32"};
  for (std::size_t first = 0; first < names.size(); ++first) {
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

TEST_F(LoadingTest, LooksAgainAtEachCallAsLongAsThereIsNone) {
  managers.Are({});
  CallerBuffer buffer;
  EXPECT_EQ(library->UserInit(), 0);
  EXPECT_EQ(library->UserNext("1", buffer), 0);
  EXPECT_EQ(library->GetDokuNr("12345678"), 0);
  EXPECT_THAT(user.Messages(), ElementsAre(kNotLoaded, kNotLoaded, kNotLoaded));
  EXPECT_THAT(buffer, IsUntouched());

  managers.Are({{"wbtrv32"}});
  EXPECT_EQ(library->UserInit(), 0);
  EXPECT_THAT(user.Messages(), ElementsAre(CannotOpen("ZTUSER.KRV")));
}

TEST_F(LoadingTest, NeedsBothEntryPointsAtEachCall) {
  for (const auto kind : {PlacedManager::kWithoutBtrCall, PlacedManager::kWithoutBtrCallId}) {
    managers.Are({{"w3btrv7", kind}, {"wbtrv32"}});  // a complete one behind it is no help
    EXPECT_EQ(library->UserInit(), 0);
    EXPECT_EQ(library->GetDokuNr("12345678"), 0);
    EXPECT_THAT(user.Messages(), ElementsAre(kIncomplete, kIncomplete));
    library.Free();
    UnloadRecordManagers();
  }
}

TEST_F(LoadingTest, StaysLoadedWhenTheLibraryIsFreed) {
  EXPECT_EQ(library->UserInit(), 0);
  ReleaseEmbedded();
  library.Free();
  EXPECT_NE(GetModuleHandleA("atbtrv32.dll"), nullptr);
}

TEST_F(LoadingTest, LeavesTheProcessItsErrorMode) {
  constexpr UINT kMode = SEM_NOOPENFILEERRORBOX;
  const UINT before = SetErrorMode(kMode);
  EXPECT_EQ(library->UserInit(), 0);
  EXPECT_EQ(SetErrorMode(before), kMode);
}

class CallingTest : public ScriptedExportTest {
 protected:
  void SetUp() override { office.Has<UserRecord>({{UserRecord::number, 17}}); }
};

TEST_F(CallingTest, OpensWithAnEmptyOwnerNameInTheNormalMode) {
  EXPECT_EQ(library->UserInit(), 1);
  const ManagerCall& open = manager.Calls().at(0);
  EXPECT_EQ(open.operation, btrieve::kOpen);
  EXPECT_EQ(open.path, office.DataFolder().string() + "\\ZTUSER.KRV");
  EXPECT_EQ(open.data, std::string(1, '\0'));
  EXPECT_EQ(open.keyNumber, 0);
}

TEST_F(CallingTest, MakesPlainCallsWithTheLargestKeyLengthAndTheRecordLength) {
  EXPECT_EQ(library->UserInit(), 1);
  EXPECT_THAT(manager.CallTexts(), ElementsAre("Open ZTUSER.KRV", "GetFirst ZTUSER.KRV 0",
                                               "GetNext ZTUSER.KRV 0", "Close ZTUSER.KRV"));
  EXPECT_THAT(manager.Calls(), Each(Field(&ManagerCall::plain, true)));
  EXPECT_THAT(manager.Calls(), Each(Field(&ManagerCall::keyLength, 255)));
  EXPECT_EQ(manager.Calls().at(1).dataLength, 924U);
  EXPECT_EQ(manager.Calls().at(2).dataLength, 924U);
}

TEST_F(CallingTest, TakesTheLongestDataPathAsItIsStored) {
  office.IsConfiguredWithBytes("DataRoot", std::string(200, 'x'));  // unterminated
  EXPECT_EQ(library->UserInit(), 0);
  EXPECT_THAT(user.Messages(), ElementsAre(CannotOpen("ZTUSER.KRV")));
  EXPECT_EQ(manager.Calls().at(0).path, std::string(200, 'x') + "\\ZTUSER.KRV");

  office.IsConfiguredWithBytes("DataRoot", std::string(201, 'x'));
  EXPECT_EQ(library->UserInit(), 0);
  EXPECT_THAT(user.Messages(), ElementsAre(NoDataPath("User")));
}

TEST_F(CallingTest, TriesABusyRecordOrFileAgain) {
  const WORD operations[] = {btrieve::kOpen, btrieve::kGetFirst, btrieve::kGetNext,
                             btrieve::kClose};
  for (const int status : {77, 81, 84, 85}) {
    manager.Forget();
    for (const WORD operation : operations) {
      manager.Answers(operation, "ZTUSER.KRV", status, 3);
    }
    EXPECT_EQ(library->UserInit(), 1) << status;
    EXPECT_THAT(manager.Calls(), SizeIs(4 * (3 + 1))) << status;
  }
}

TEST_F(CallingTest, TriesNoOtherFailureAgain) {
  for (const int status : {1, 2, 3, 9, 46, 76, 78, 79, 80, 82, 83, 86, 94}) {
    manager.Forget();
    manager.Answers(btrieve::kGetFirst, "ZTUSER.KRV", status);
    EXPECT_EQ(library->UserInit(), 0);
    EXPECT_THAT(manager.Calls(), SizeIs(3)) << status;
  }
}

TEST_F(CallingTest, GivesUpAfterTheLastAttemptAndSaysSo) {
  const struct {
    WORD operation;
    int status;
    std::vector<MessageBox> messages;
    std::size_t otherCalls;
  } cases[] = {
      {btrieve::kOpen, 85, {kBusy, CannotOpen("ZTUSER.KRV")}, 0},
      {btrieve::kGetFirst, 84, {kBusy}, 2},
      {btrieve::kGetFirst, 77, {kBusy}, 2},
      {btrieve::kClose, 81, {kBusy, CannotClose("ZTUSER.KRV")}, 3},
  };
  for (const auto& [operation, status, messages, otherCalls] : cases) {
    manager.Forget();
    manager.Answers(operation, "ZTUSER.KRV", status);
    EXPECT_EQ(library->UserInit(), operation == btrieve::kClose ? 1 : 0);
    EXPECT_EQ(user.Messages(), messages);
    EXPECT_EQ(manager.Calls().size(), kMostAttempts + otherCalls);
  }
}

TEST_F(CallingTest, CountsTheAttemptsBeforeItLooksAtTheirStatus) {
  manager.Answers(btrieve::kGetFirst, "ZTUSER.KRV", 84, kMostAttempts - 2);
  EXPECT_EQ(library->UserInit(), 1);
  manager.Forget();
  manager.Answers(btrieve::kGetFirst, "ZTUSER.KRV", 84, kMostAttempts - 1);
  EXPECT_EQ(library->UserInit(), 1);  // the last attempt succeeded, and yet there was a message
  EXPECT_THAT(user.Messages(), ElementsAre(kBusy));
}

TEST_F(CallingTest, DeletesTheRecordThatItFoundByTheSameKey) {
  office.Has<FollowUpRecord>({{FollowUpRecord::id, 5}});
  manager.Answers(btrieve::kGetEqual, "ZTDOLIST.KRV", 84, 1);
  manager.Answers(btrieve::kDelete, "ZTDOLIST.KRV", 85, 2);
  EXPECT_EQ(library->WVDelete("5"), -1);
  const std::vector<std::string> texts = manager.CallTexts();
  const std::vector<std::string> lastFive(texts.end() - 5, texts.end());
  EXPECT_THAT(lastFive,
              ElementsAre("GetEqual ZTDOLIST.KRV 0", "Delete ZTDOLIST.KRV 0",
                          "Delete ZTDOLIST.KRV 0", "Delete ZTDOLIST.KRV 0", "Close ZTDOLIST.KRV"));
  EXPECT_THAT(office.Records<FollowUpRecord>(), SizeIs(0));
}

TEST_F(CallingTest, TellsOfAFileThatCannotBeClosedAndGoesOn) {
  manager.Answers(btrieve::kClose, "ZTUSER.KRV", 2);
  EXPECT_EQ(library->UserInit(), 1);
  EXPECT_THAT(user.Messages(), ElementsAre(CannotClose("ZTUSER.KRV")));
}

}  // namespace
}  // namespace qlx99::tests
