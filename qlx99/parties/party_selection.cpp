#include "parties/party_selection.h"

#include "addresses/address_files.h"
#include "frame/bytes.h"
#include "frame/screen.h"
#include "resources/resource.h"

namespace qlx99 {
namespace {

constexpr UINT kTabStop = 120;          // in dialog units
constexpr WPARAM kScrollExtent = 500;   // in pixels
constexpr std::size_t kNameShown = 35;  // characters of a name in a line

using ListLine = TextBuffer<300>;

// The selection being made. Process-wide, because a dialog procedure is given nothing else to know
// it by; there is one dialog at a time.
struct SelectionCall {
  const CaseNumberKey* key = nullptr;
  const Role* role = nullptr;
  PartyReference chosen;
};

SelectionCall selectionCall;

// The eight files of the dialog. Four are opened, and so asked for, but not read.
struct SelectionFiles {
  explicit SelectionFiles(const DataRoot& dataRoot)
      : contacts(dataRoot),
        cases(dataRoot, contacts),
        relations(dataRoot, cases),
        titles(dataRoot, relations),
        salutations(dataRoot, titles),
        links(dataRoot, salutations),
        parties(dataRoot, links),
        addresses(dataRoot, parties) {}

  bool AreOpen() const { return addresses.IsOpen(); }

  RecordFile<ContactPersonRecord> contacts;
  RecordFile<CaseRecord> cases;
  RecordFile<RelationRecord> relations;
  RecordFile<TitleRecord> titles;
  RecordFile<SalutationRecord> salutations;
  RecordFile<AddressLinkRecord> links;
  RecordFile<CasePartyRecord> parties;
  RecordFile<AddressRecord> addresses;
};

void ShowCase(HWND dialog, const Record<CaseRecord>& found) {
  TextBuffer<CaseRecord::rubrum.width> rubrum;
  rubrum.Append(found[CaseRecord::rubrum]);
  SetControlText(dialog, IDC_CASE_NUMBER, selectionCall.key->Text());
  SetControlText(dialog, IDC_RUBRUM, rubrum.Terminated());
}

// The relation's designation and the name of the address's first contact person, as far as there
// are any.
ListLine LineOf(SelectionFiles& files, const Record<CasePartyRecord>& party, bool relationFound) {
  ListLine line;
  if (relationFound) {
    line.Append(TrimBlanks(files.relations.Current()[RelationRecord::designation]));
  }
  line.Append("\t");
  if (FindFirstContactPerson(files.contacts, party[CasePartyRecord::addressNumber])) {
    const auto& contact = files.contacts.Current();
    line.Append(TrimBlanks(contact[ContactPersonRecord::firstName]));
    line.Append("\t ");
    line.Append(TrimBlanks(Part(contact[ContactPersonRecord::name], 0, kNameShown)));
  }
  return line;
}

void AddParty(HWND dialog, SelectionFiles& files, const Record<CasePartyRecord>& party) {
  const auto match =
      MatchRelation(files.relations, *selectionCall.role, party[CasePartyRecord::relationId]);
  if (!match.matches) return;

  const ListLine line = LineOf(files, party, !match.code.Bytes().empty());
  const PartyReference reference = ReferenceOf(party, match.code.Bytes());
  AddLine(dialog, IDC_PARTY_LINES, line.Terminated());
  AddLine(dialog, IDC_PARTY_REFERENCES, reference.Terminated());
  SendDlgItemMessageA(dialog, IDC_PARTY_LINES, LB_SETCURSEL, 0, 0);
}

// False when a file cannot be opened or the case is not there any more; a dialog without a line is
// no failure.
bool FillPartySelection(HWND dialog) {
  const auto dataRoot = ReadDataRoot(kNoDataPathForAddresses);
  if (!dataRoot) return false;
  SelectionFiles files(*dataRoot);
  if (!files.AreOpen() || !FindCase(files.cases, *selectionCall.key)) return false;

  const auto& found = files.cases.Current();
  ShowCase(dialog, found);
  UINT tabStop = kTabStop;
  SendDlgItemMessageA(dialog, IDC_PARTY_LINES, LB_SETTABSTOPS, 1,
                      reinterpret_cast<LPARAM>(&tabStop));
  SendDlgItemMessageA(dialog, IDC_PARTY_LINES, LB_SETHORIZONTALEXTENT, kScrollExtent, 0);
  for (const auto& party : files.parties.Walk(CasePartyRecord::byCase, found[CaseRecord::id])) {
    AddParty(dialog, files, party);
  }
  return true;
}

void TakeSelection(HWND dialog) {
  const LRESULT index = SendDlgItemMessageA(dialog, IDC_PARTY_LINES, LB_GETCURSEL, 0, 0);
  if (index == LB_ERR) return;
  std::array<char, sizeof(PartyReference)> reference{};
  ReadLine(dialog, IDC_PARTY_REFERENCES, static_cast<WPARAM>(index), reference.data(),
           reference.size());
  selectionCall.chosen.Append(reference.data());
}

void InitDialog(HWND dialog) {
  SetTitle(dialog, selectionCall.role->dialogTitle);
  if (!FillPartySelection(dialog)) EndDialog(dialog, IDC_CANCEL);
}

INT_PTR CALLBACK PartySelectionProc(HWND dialog, UINT message, WPARAM wordParam,
                                    LPARAM /*unused*/) {
  if (message == WM_INITDIALOG) InitDialog(dialog);
  if (message != WM_COMMAND) return 0;
  const WORD command = LOWORD(wordParam);
  if (command == IDC_TAKE) TakeSelection(dialog);
  if (command == IDC_TAKE || command == IDC_CANCEL) EndDialog(dialog, command);
  return 0;
}

}  // namespace

PartyReference ShowPartySelection(const CaseNumberKey& key, const Role& role) {
  selectionCall = {&key, &role, {}};
  RunDialog(IDD_PARTY_SELECTION, PartySelectionProc, 0);
  const PartyReference chosen = selectionCall.chosen;
  selectionCall = {};
  return chosen;
}

}  // namespace qlx99
