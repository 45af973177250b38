#include "parties/party_selection.h"

#include "addresses/address_file.h"
#include "addresses/address_link_file.h"
#include "addresses/contact_person_file.h"
#include "addresses/salutation_file.h"
#include "addresses/title_file.h"
#include "frame/bytes.h"
#include "frame/dialogs.h"
#include "frame/screen.h"
#include "resources/resource.h"

namespace qlx99 {
namespace {

constexpr UINT kTabStop = 120;          // in dialog units
constexpr WPARAM kScrollExtent = 500;   // in pixels
constexpr std::size_t kNameShown = 35;  // characters of a name in a line

using ListLine = TextBuffer<300>;

// The eight files of the dialog. Four are not read: they are opened so that the user learns when
// one is missing.
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

// One call's selection.
class PartySelection {
 public:
  static constexpr int kLines = IDC_PARTY_LINES;

  PartySelection(const CaseNumberKey& key, const Role& role) : key_(key), role_(role) {}

  // False when a file cannot be opened or the case is not there any more; a dialog without a line
  // is no failure.
  bool Fill(HWND dialog);
  void Take(HWND dialog, WPARAM index);

  const PartyReference& Chosen() const { return chosen_; }

 private:
  void ShowCase(HWND dialog, const Record<CaseRecord>& found) const;
  void AddParty(HWND dialog, SelectionFiles& files, const Record<CasePartyRecord>& party) const;

  const CaseNumberKey& key_;
  const Role& role_;
  PartyReference chosen_;
};

void PartySelection::ShowCase(HWND dialog, const Record<CaseRecord>& found) const {
  TextBuffer<CaseRecord::rubrum.width> rubrum;
  rubrum.Append(found[CaseRecord::rubrum]);
  SetControlText(dialog, IDC_CASE_NUMBER, key_.Text());
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
  if (const auto* contact = files.contacts.Find(ContactPersonRecord::byAddress,
                                                party[CasePartyRecord::addressNumber])) {
    line.Append(TrimBlanks((*contact)[ContactPersonRecord::firstName]));
    line.Append("\t ");
    line.Append(TrimBlanks(Part((*contact)[ContactPersonRecord::name], 0, kNameShown)));
  }
  return line;
}

void PartySelection::AddParty(HWND dialog, SelectionFiles& files,
                              const Record<CasePartyRecord>& party) const {
  const auto match = MatchRelation(files.relations, role_, party[CasePartyRecord::relationId]);
  if (!match.matches) return;

  const ListLine line = LineOf(files, party, !match.code.Bytes().empty());
  const PartyReference reference = ReferenceOf(party, match.code.Bytes());
  AddLine(dialog, kLines, line.Terminated());
  AddLine(dialog, IDC_PARTY_REFERENCES, reference.Terminated());
  SendDlgItemMessageA(dialog, kLines, LB_SETCURSEL, 0, 0);
}

bool PartySelection::Fill(HWND dialog) {
  SetTitle(dialog, role_.dialogTitle);
  const auto dataRoot = ReadDataRoot(kNoDataPathForAddresses);
  if (!dataRoot) return false;
  SelectionFiles files(*dataRoot);
  if (!files.AreOpen() || !FindCase(files.cases, key_)) return false;

  const auto& found = files.cases.Current();
  ShowCase(dialog, found);
  SetTabStop(dialog, kLines, kTabStop);
  SendDlgItemMessageA(dialog, kLines, LB_SETHORIZONTALEXTENT, kScrollExtent, 0);
  for (const auto& party : files.parties.Walk(CasePartyRecord::byCase, found[CaseRecord::id])) {
    AddParty(dialog, files, party);
  }
  return true;
}

void PartySelection::Take(HWND dialog, WPARAM index) {
  std::array<char, sizeof(PartyReference)> reference{};
  ReadLine(dialog, IDC_PARTY_REFERENCES, index, reference.data(), reference.size());
  chosen_ = {};
  chosen_.Append(reference.data());
}

}  // namespace

PartyReference ShowPartySelection(const CaseNumberKey& key, const Role& role) {
  PartySelection selection(key, role);
  RunDialog(IDD_PARTY_SELECTION, selection);
  return selection.Chosen();
}

}  // namespace qlx99
