// ALesenDLL: one address with everything that belongs to it, as one line of 25 fields in four
// blocks: the contact person, the postal address, the bank connection, and what a case says of the
// address as its party.
#include "addresses/address_file.h"
#include "addresses/address_link_file.h"
#include "addresses/choice_dialogs.h"
#include "addresses/nationality_file.h"
#include "addresses/relation_file.h"
#include "addresses/salutation_file.h"
#include "addresses/title_file.h"
#include "caseparties/case_party_file.h"
#include "cases/case_file.h"
#include "frame/arguments.h"
#include "frame/bytes.h"
#include "frame/call_gate.h"
#include "frame/exports.h"
#include "store/record_fields.h"

namespace qlx99 {
namespace {

// Kept between calls: a macro that passes no link number means the one it passed last.
struct LastRequest {
  std::int32_t linkNumber = 0;
};

LastRequest lastRequest;

// What one call asks for. While it shows a dialog or a message, another may ask for something else.
struct AddressRequest {
  CaseNumberKey caseNumber;
  std::int32_t addressNumber;
  std::int32_t linkNumber;
};

// The six files that every call reads.
struct AddressBook {
  explicit AddressBook(const DataRoot& dataRoot)
      : contacts(dataRoot),
        relations(dataRoot, contacts),
        titles(dataRoot, relations),
        salutations(dataRoot, titles),
        addresses(dataRoot, salutations),
        banks(dataRoot, addresses) {}

  bool IsOpen() const { return banks.IsOpen(); }

  RecordFile<ContactPersonRecord> contacts;
  RecordFile<RelationRecord> relations;
  RecordFile<TitleRecord> titles;
  RecordFile<SalutationRecord> salutations;
  RecordFile<AddressRecord> addresses;
  RecordFile<BankConnectionRecord> banks;
};

// What a case says of the address; blank when the address is no party of it.
struct PartyTexts {
  PartyTexts() {
    addressAddition.fill(' ');
    contactAddition.fill(' ');
  }

  std::array<char, CasePartyRecord::addressAddition.width> addressAddition;
  std::array<char, CasePartyRecord::contactAddition.width> contactAddition;
  std::int32_t linkNumber = 0;
};

template <std::size_t size>
void Keep(std::string_view stored, std::array<char, size>& text) {
  CopyBytes(stored, text.data(), size);
}

// The party of the case that is this address under the requested link number.
PartyTexts FindPartyTexts(const DataRoot& dataRoot, const AddressRequest& request) {
  PartyTexts texts;
  RecordFile<CasePartyRecord> parties(dataRoot);
  RecordFile<CaseRecord> cases(dataRoot, parties);
  if (!cases.IsOpen() || !FindCase(cases, request.caseNumber)) return texts;

  const std::int32_t caseId = cases.Current()[CaseRecord::id];
  for (const auto& party : parties.Walk(CasePartyRecord::byCase, caseId)) {
    if (party[CasePartyRecord::addressNumber] != request.addressNumber ||
        party[CasePartyRecord::addressLinkNumber] != request.linkNumber) {
      continue;
    }
    Keep(party[CasePartyRecord::addressAddition], texts.addressAddition);
    Keep(party[CasePartyRecord::contactAddition], texts.contactAddition);
    texts.linkNumber = party[CasePartyRecord::addressLinkNumber];
    break;
  }
  return texts;
}

enum class Outcome : std::uint8_t {
  kNone,        // the address has no such record
  kRead,        // one was read
  kUnreadable,  // the record manager failed, or the chosen record is gone
};

// Reads the chosen record again, into `record`, which holds the first one. Another workstation may
// have removed it while the dialog was open; no other record takes its place then.
template <class Layout>
Outcome ReadChosen(RecordCursor<Layout>& file, std::int32_t addressNumber, std::int32_t chosen,
                   Record<Layout>& record) {
  Status status = file.GetEqual(Layout::byAddress, addressNumber);
  if (status == btrieve::kEndOfFile) return Outcome::kRead;  // the first
  while (status == btrieve::kSuccess && file.Current()[Layout::addressNumber] == addressNumber) {
    if (file.Current()[Layout::number] == chosen) {
      record = file.Current();
      return Outcome::kRead;
    }
    status = file.GetNext(Layout::byAddress);
  }
  return Outcome::kUnreadable;
}

// Reads the address's contact person or bank connection. Where it has several, the user chooses;
// without a choice it is the first.
template <class Layout>
Outcome ReadOneOf(RecordCursor<Layout>& file, std::int32_t addressNumber,
                  std::int32_t (*choose)(const RecordCursor<Layout>&, std::int32_t),
                  Record<Layout>& record) {
  if (file.GetEqual(Layout::byAddress, addressNumber) != btrieve::kSuccess) return Outcome::kNone;
  record = file.Current();
  const Status status = file.GetNext(Layout::byAddress);
  if (status == btrieve::kEndOfFile) return Outcome::kRead;
  if (status != btrieve::kSuccess) return Outcome::kUnreadable;
  if (file.Current()[Layout::addressNumber] != addressNumber) return Outcome::kRead;
  const std::int32_t chosen = choose(file, addressNumber);
  return chosen == 0 ? Outcome::kRead : ReadChosen(file, addressNumber, chosen, record);
}

// A contact person without a salutation of its own is addressed as its address is.
void AddLetterSalutation(AddressBook& book, std::int32_t addressNumber,
                         std::int32_t salutationNumber, ResultLine& dest) {
  using S = SalutationRecord;
  if (salutationNumber == 0) {
    const auto* address = book.addresses.Find(AddressRecord::byNumber, addressNumber);
    if (address == nullptr) return dest.AddEmptyField();
    salutationNumber = (*address)[AddressRecord::salutationNumber];
  }
  RecordFields(book.salutations.Find(S::byNumber, salutationNumber), dest).Add(S::letterSalutation);
}

void AddTitle(AddressBook& book, std::int32_t titleNumber, ResultLine& dest) {
  RecordFields(book.titles.Find(TitleRecord::byNumber, titleNumber), dest).Add(TitleRecord::title);
}

void AddContactBlock(AddressBook& book, std::int32_t addressNumber, ResultLine& dest) {
  using C = ContactPersonRecord;
  Record<C> contact;
  const Outcome outcome = ReadOneOf(book.contacts, addressNumber, ChooseContactPerson, contact);
  if (outcome == Outcome::kUnreadable) return;
  RecordFields(outcome == Outcome::kRead ? &contact : nullptr, dest)
      .Add(C::firstName)
      .Add(C::name)
      .Add([&](const auto& found) {
        AddLetterSalutation(book, addressNumber, found[C::salutationNumber], dest);
      })
      .Add([&](const auto& found) { AddTitle(book, found[C::titleNumber], dest); })
      .Add(C::nameAddition)
      .Add(C::freeText)
      .Add(C::shortField1)
      .Add(C::shortField2)
      .Add(C::shortField3)
      .Add(C::shortField4)
      .Add(C::shortField5)
      .Add(C::wideField);
}

void AddNationality(const DataRoot& dataRoot, std::int32_t nationalityNumber, ResultLine& dest) {
  using N = NationalityRecord;
  RecordFile<N> nationalities(dataRoot);
  RecordFields(nationalities.Find(N::byNumber, nationalityNumber), dest).Add(N::nationality);
}

// Returns what the case says of the address, for the link block.
PartyTexts AddAddressBlock(AddressBook& book, const DataRoot& dataRoot,
                           const AddressRequest& request, ResultLine& dest) {
  using A = AddressRecord;
  PartyTexts texts;
  RecordFields(book.addresses.Find(A::byNumber, request.addressNumber), dest)
      .Add([&](const auto& found) { AddStreet(found, dest); })
      .Add(A::postalCode)
      .Add(A::place)
      .Add(A::secondPostalCode)
      .Add(A::secondPlace)
      .Add([&](const auto& /*found*/) {
        texts = FindPartyTexts(dataRoot, request);
        dest.AddField({texts.addressAddition.data(), texts.addressAddition.size()});
      })
      .Add([&](const auto& found) { AddNationality(dataRoot, found[A::nationalityNumber], dest); });
  return texts;
}

void AddBankBlock(AddressBook& book, std::int32_t addressNumber, ResultLine& dest) {
  using B = BankConnectionRecord;
  Record<B> bank;
  const Outcome outcome = ReadOneOf(book.banks, addressNumber, ChooseBankConnection, bank);
  if (outcome == Outcome::kUnreadable) return;
  RecordFields(outcome == Outcome::kRead ? &bank : nullptr, dest)
      .Add(B::bankName)
      .Add(B::bankCode)
      .Add(B::accountNumber);
}

void AddRelation(AddressBook& book, std::int32_t relationId, ResultLine& dest) {
  using R = RelationRecord;
  RecordFields(book.relations.Find(R::byId, relationId), dest).Add(R::designation);
}

// The record that ties the address to the link; null when there is none or the file is not open.
const Record<AddressLinkRecord>* FindLink(RecordFile<AddressLinkRecord>& links,
                                          std::int32_t linkNumber, std::int32_t addressNumber) {
  if (!links.IsOpen()) return nullptr;
  for (const auto& link : links.Walk(AddressLinkRecord::byLink, linkNumber)) {
    if (link[AddressLinkRecord::addressNumber] == addressNumber) return &link;
  }
  return nullptr;
}

void AddLink(AddressBook& book, const Record<AddressLinkRecord>* link, ResultLine& dest) {
  using L = AddressLinkRecord;
  RecordFields(link, dest).Add(L::linkText).Add([&](const auto& found) {
    AddRelation(book, found[L::relationId], dest);
  });
}

void AddLinkBlock(AddressBook& book, const DataRoot& dataRoot, std::int32_t addressNumber,
                  const PartyTexts& texts, ResultLine& dest) {
  if (book.addresses.Find(AddressRecord::byNumber, addressNumber) == nullptr) {
    dest.AddEmptyField();
    return AddLink(book, nullptr, dest);
  }
  dest.AddField({texts.contactAddition.data(), texts.contactAddition.size()});
  RecordFile<AddressLinkRecord> links(dataRoot);
  AddLink(book, FindLink(links, texts.linkNumber, addressNumber), dest);
}

// Composes nothing when a file cannot be opened.
void ReadAddress(const AddressRequest& request, ResultLine& dest) {
  const auto dataRoot = ReadDataRoot(kNoDataPathForAddresses);
  if (!dataRoot) return;
  AddressBook book(*dataRoot);
  if (!book.IsOpen()) return;

  AddContactBlock(book, request.addressNumber, dest);
  const PartyTexts texts = AddAddressBlock(book, *dataRoot, request, dest);
  AddBankBlock(book, request.addressNumber, dest);
  AddLinkBlock(book, *dataRoot, request.addressNumber, texts, dest);
}

std::int32_t DeliverAddress(const char* caseNumber, const char* addressNumber, char* buffer,
                            const char* linkNumber) {
  if (linkNumber != nullptr) lastRequest.linkNumber = LeadingNumber(linkNumber);
  const AddressRequest request{CaseNumberKey(caseNumber), LeadingNumber(addressNumber),
                               lastRequest.linkNumber};
  if (!EnsureRecordManager()) return 0;
  ResultLine address;
  ReadAddress(request, address);
  address.DropLastEnd();
  return HandOver(address, buffer, HandOverForm::kWithEndMark);
}

}  // namespace

std::int32_t WINAPI ALesenDLL(const char* caseNumber, const char* addressNumber, char* record,
                              const char* linkNumber) {
  return PassGate("ALesenDLL", DeliverAddress, caseNumber, addressNumber, record, linkNumber);
}

}  // namespace qlx99
