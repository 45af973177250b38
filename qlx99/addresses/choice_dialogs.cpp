#include "addresses/choice_dialogs.h"

#include "frame/screen.h"
#include "resources/resource.h"
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
  static constexpr TextField columns[] = {Layout::bankName, Layout::accountNumber};
};

struct ContactChoice {
  using Layout = ContactPersonRecord;
  static constexpr WORD dialog = IDD_CONTACT_CHOICE;
  static constexpr int lines = IDC_CONTACT_LINES;
  static constexpr int numbers = IDC_CONTACT_NUMBERS;
  static constexpr UINT tabStop = 80;
  static constexpr TextField columns[] = {Layout::name, Layout::firstName};
};

// The choice being made. Process-wide, because a dialog procedure is given nothing else to know it
// by; there is one dialog at a time.
template <class Choice>
struct ChoiceCall {
  std::int32_t addressNumber = 0;
  RecordCursor<typename Choice::Layout>* records = nullptr;
  std::int32_t chosenRecordNumber = 0;
};

template <class Choice>
ChoiceCall<Choice> choiceCall;

template <class Choice>
void AddRecord(HWND dialog, const Record<typename Choice::Layout>& record) {
  ListLine line;
  for (const TextField& column : Choice::columns) {
    line.Append(TrimBlanks(record[column]));
    line.Append("\t");
  }
  UINT tabStop = Choice::tabStop;
  SendDlgItemMessageA(dialog, Choice::lines, LB_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&tabStop));
  AddLine(dialog, Choice::lines, line.Terminated());

  // The record's number rides along in the hidden list, at the same index, as item data: whole,
  // whatever its bytes.
  const LRESULT index = AddLine(dialog, Choice::numbers, "");
  SendDlgItemMessageA(dialog, Choice::numbers, LB_SETITEMDATA, static_cast<WPARAM>(index),
                      record[Choice::Layout::number]);
  SendDlgItemMessageA(dialog, Choice::lines, LB_SETCURSEL, 0, 0);
}

template <class Choice>
void FillLists(HWND dialog) {
  const auto& call = choiceCall<Choice>;
  if (!ReadDataRoot(kNoDataPathForAddresses)) return;
  for (const auto& record : call.records->Walk(Choice::Layout::byAddress, call.addressNumber)) {
    AddRecord<Choice>(dialog, record);
  }
}

template <class Choice>
void TakeChoice(HWND dialog) {
  const LRESULT index = SendDlgItemMessageA(dialog, Choice::lines, LB_GETCURSEL, 0, 0);
  if (index == LB_ERR) return;
  choiceCall<Choice>.chosenRecordNumber = static_cast<std::int32_t>(
      SendDlgItemMessageA(dialog, Choice::numbers, LB_GETITEMDATA, static_cast<WPARAM>(index), 0));
}

template <class Choice>
INT_PTR CALLBACK ChoiceDialogProc(HWND dialog, UINT message, WPARAM wordParam, LPARAM /*unused*/) {
  if (message == WM_INITDIALOG) FillLists<Choice>(dialog);
  if (message != WM_COMMAND) return 0;
  const WORD command = LOWORD(wordParam);
  if (command == IDC_TAKE) TakeChoice<Choice>(dialog);
  if (command == IDC_TAKE || command == IDC_CANCEL) EndDialog(dialog, IDC_CANCEL);
  return 0;
}

template <class Choice>
std::int32_t Choose(const RecordCursor<typename Choice::Layout>& file, std::int32_t addressNumber) {
  RecordCursor<typename Choice::Layout> copy(file);
  auto& call = choiceCall<Choice>;
  call = {addressNumber, &copy, 0};
  RunDialog(Choice::dialog, ChoiceDialogProc<Choice>, 0);
  call.records = nullptr;
  return call.chosenRecordNumber;
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
