// The windows of the library have no owner, so the host stays alive while one is open, and a second
// click on its toolbar starts a second call. Each call gives what it gives alone.
#include <map>

#include "resources/resource.h"
#include "support/export_test.h"

namespace qlx99::tests {
namespace {

// A call that shows one dialog, and what its user does there, or one message.
struct Row {
  const char* name;
  std::function<std::int32_t(char* buffer)> call;
  std::function<void(OpenDialog&)> act;
};

class NestedCallsTest : public ExampleOfficeTest {
 protected:
  NestedCallsTest() {
    office.Has<ContactPersonRecord>("number: 256, addressNumber: 4711, name: Meier");
    for (const std::string number : {"201", "202"}) {
      office.Has<BankConnectionRecord>("number: " + number +
                                       ", addressNumber: 4712, bankName: Bank " + number);
    }
    office.Changes<CaseRecord>(CaseRecord::byId, 8, "currency: USD");
  }

  std::string Alone(const Row& row) {
    if (row.act) user.Does(row.act);
    return OutcomeOf(row.call);
  }

  using Outcomes = std::pair<std::string, std::string>;

  // While the window of `first` is open, the host makes the call `second`. Where both are dialogs,
  // either may be closed before the other.
  Outcomes Both(const Row& first, const Row& second, bool closesFirst = false) {
    Outcomes outcomes;
    const auto callSecond = [&] { outcomes.second = OutcomeOf(second.call); };
    const auto meetSecond = [&](auto closeFirst) {
      if (!second.act) return;
      user.Does([=, &second](OpenDialog& dialog) {
        closeFirst();
        second.act(dialog);
      });
    };
    if (first.act) {
      user.Does([&](OpenDialog& dialog) {
        meetSecond([&] { closesFirst ? first.act(dialog) : void(); });
        callSecond();
        if (dialog.IsOpen()) first.act(dialog);
      });
    } else {
      user.DoesAtMessage([&] {
        meetSecond([] {});
        callSecond();
      });
    }
    outcomes.first = OutcomeOf(first.call);
    return outcomes;
  }

  Row Address(const char* name, const char* number, const char* link, int line) {
    return {name,
            [=, this](char* b) { return library->ALesenDLL(InPlace("12345678"), number, b, link); },
            Choice(line)};
  }

  Row Party(const char* name, const char* role, const char* caseNumber,
            const std::function<void(OpenDialog&)>& act) {
    return {name,
            [=, this](char* b) {
              return library->BLesenDLL(role, InPlace(caseNumber), nullptr, nullptr, b);
            },
            act};
  }

  Row Case(const char* name, const char* caseNumber) {
    return {name, [=, this](char* b) { return library->SLesenDLL(InPlace(caseNumber), b); },
            nullptr};
  }

  // The host keeps the case number of every call in the same memory.
  const char* InPlace(const char* caseNumber) {
    place_ = caseNumber;
    return place_.c_str();
  }

 private:
  std::string place_;
};

TEST_F(NestedCallsTest, GiveWhatTheyGiveAlone) {
  office.Lacks<CaseTypeRecord>();
  const auto cancel = [](OpenDialog& dialog) { dialog.Press(IDC_CANCEL); };
  const Row rows[] = {Address("a contact person", "4711", "815", 2),
                      Address("a contact person under another link", "4711", "0", 1),
                      Address("a bank connection", "4712", "815", 2),
                      Party("a party", "M ", "12345678", Choice(3)),
                      Party("no party", "M ", "12345670", cancel),
                      Case("a message about a case", "12345678"),
                      Case("a message about another case", "12345679")};
  std::map<const Row*, std::string> alone;
  for (const Row& row : rows) alone[&row] = Alone(row);
  for (const Row& first : rows) {
    for (const Row& second : rows) {
      SCOPED_TRACE(std::string(first.name) + ", and meanwhile " + second.name);
      const Outcomes expected{alone[&first], alone[&second]};
      EXPECT_EQ(Both(first, second, &first <= &second), expected);
    }
  }
  user.Messages();
}

// The host may use the memory of its arguments anew while a message is open. A file that can be
// opened at the last attempt brings one all the same.
TEST_F(NestedCallsTest, WorkOnWhatTheyWereMadeFor) {
  std::string date = "24.12.2030";
  std::string text = "Frist";
  manager.Answers(btrieve::kClose, "ZTCASE.KRV", btrieve::kIoError, 1);
  user.DoesAtMessage([&] { date = text = "01.01.2001"; });
  EXPECT_EQ(library->WVNew("12345678", "7", date.c_str(), "17", "0", "0", text.c_str()), -1);
  EXPECT_EQ(OutcomeOf([&](char* b) { return library->WVNext("12345678", "3", b); }),
            "-1 24.12.2030||7|Frist|Meier|MEI|17|||0|0|4");
  const auto opensLate = [&](const char* file) {
    manager.Answers(btrieve::kOpen, file, btrieve::kFileInUse, kMaxAttempts);
    user.DoesAtMessage([&] { InPlace("12345670"); });
  };
  opensLate("ZTDOLIST.KRV");
  EXPECT_EQ(library->WVInit(InPlace("12345678")), 3);
  opensLate("ZTHISTO.KRV");
  EXPECT_EQ(library->GetDokuNr(InPlace("12345678")), 1);
  EXPECT_EQ(library->GetDokuNr("12345678"), 2);
  EXPECT_EQ(user.Messages().size(), 3U);
}

// The host is told to end while a dialog is open. The dialog that comes next, within that call or
// after it, is the first that could be ended by it.
TEST_F(NestedCallsTest, EndNoDialogWhenTheyEndTheHost) {
  const Row row = Address("a bank connection", "4712", "815", 2);
  const Row ending{row.name,
                   [&](char* buffer) {
                     PostQuitMessage(7);
                     return row.call(buffer);
                   },
                   row.act};
  const std::string alone = Alone(row);
  EXPECT_EQ(Both(row, ending), Outcomes(alone, alone));
  EXPECT_EQ(Alone(row), alone);
  EXPECT_EQ(DispatchAsTheHost(), 7);
}

}  // namespace
}  // namespace qlx99::tests
