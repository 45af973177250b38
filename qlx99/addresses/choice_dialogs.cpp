#include "addresses/choice_dialogs.h"

#include "frame/dialogs.h"
#include "frame/screen.h"
#include "resources/resource.h"
#include "store/result_line.h"
#include "store/text_buffer.h"

namespace qlx99 {
namespace {

using ListLine = TextBuffer<300>;

// What a dialog shows of each record, and where.
struct BankChoice {
  using Layout = BankConnectionRecord;
  static constexpr WORD dialog = IDD_BANK_CHOICE;
  static constexpr int lines = IDC_BANK_LINES;
  static constexpr int numbers = IDC_BANK_NUMBERS;
  static constexpr UINT tabStop = 100;  // in dialog units
  static constexpr Record<Layout>::TextField columns[] = {Layout::bankName, Layout::accountNumber};
};

struct ContactChoice {
  using Layout = ContactPersonRecord;
  static constexpr WORD dialog = IDD_CONTACT_CHOICE;
  static constexpr int lines = IDC_CONTACT_LINES;
  static constexpr int numbers = IDC_CONTACT_NUMBERS;
  static constexpr UINT tabStop = 80;
  static constexpr Record<Layout>::TextField columns[] = {Layout::name, Layout::firstName};
};

// One call's choice; its dialog moves `records` only.
template <class Choice>
class RecordChoice {
 public:
  using Layout = typename Choice::Layout;
  static constexpr int kLines = Choice::lines;

  RecordChoice(const RecordCursor<Layout>& records, std::int32_t addressNumber)
      : records_(records), addressNumber_(addressNumber) {}

  bool Fill(HWND dialog);
  void Take(HWND dialog, WPARAM index);

  std::int32_t ChosenRecordNumber() const { return chosenRecordNumber_; }

 private:
  static void AddRecord(HWND dialog, const Record<Layout>& record);

  RecordCursor<Layout> records_;
  std::int32_t addressNumber_;
  std::int32_t chosenRecordNumber_ = 0;
};

template <class Choice>
void RecordChoice<Choice>::AddRecord(HWND dialog, const Record<Layout>& record) {
  ListLine line;
  for (const auto& column : Choice::columns) {
    line.Append(TrimBlanks(record[column]));
    line.Append("\t");
  }
  SetTabStop(dialog, Choice::lines, Choice::tabStop);
  AddLine(dialog, Choice::lines, line.Terminated());
  ScrollAsFarAs(dialog, Choice::lines, Choice::tabStop, line.Terminated());

  // The hidden list holds the record's number, as the item data at the same index.
  const LRESULT index = AddLine(dialog, Choice::numbers, "");
  SendDlgItemMessageA(dialog, Choice::numbers, LB_SETITEMDATA, static_cast<WPARAM>(index),
                      record[Layout::number]);
}

// The lists stay empty where nothing can be read, and the user sees that.
template <class Choice>
bool RecordChoice<Choice>::Fill(HWND dialog) {
  if (!ReadDataRoot(kNoDataPathForAddresses)) return true;
  auto walk = records_.Walk(Layout::byAddress, addressNumber_);
  for (auto record = walk.begin(); record != walk.end();) {
    AddRecord(dialog, *record);
    ++record;
    SendDlgItemMessageA(dialog, Choice::lines, LB_SETCURSEL, 0, 0);
  }
  return true;
}

template <class Choice>
void RecordChoice<Choice>::Take(HWND dialog, WPARAM index) {
  chosenRecordNumber_ = static_cast<std::int32_t>(
      SendDlgItemMessageA(dialog, Choice::numbers, LB_GETITEMDATA, index, 0));
}

template <class Choice>
std::int32_t Choose(const RecordCursor<typename Choice::Layout>& file, std::int32_t addressNumber) {
  RecordChoice<Choice> choice(file, addressNumber);
  RunDialog(Choice::dialog, choice);
  return choice.ChosenRecordNumber();
}

}  // namespace

std::int32_t ChooseBankConnection(const RecordCursor<BankConnectionRecord>& file,
                                  std::int32_t addressNumber) {
  return Choose<BankChoice>(file, addressNumber);
}

std::int32_t ChooseContactPerson(const RecordCursor<ContactPersonRecord>& file,
                                 std::int32_t addressNumber) {
  return Choose<ContactChoice>(file, addressNumber);
}

}  // namespace qlx99
