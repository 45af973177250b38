// ALesenDLL: one address with everything that belongs to it, as one record of 25 fields in four
// blocks: the contact person, the postal address, the bank connection, and what a case says of the
// address as its party.
#include <algorithm>

#include "addresses/address_files.h"
#include "addresses/choice_dialogs.h"
#include "addresses/party_files.h"
#include "caseparties/case_party_file.h"
#include "cases/case_file.h"
#include "frame/arguments.h"
#include "frame/bytes.h"
#include "frame/call_gate.h"
#include "frame/exports.h"

namespace qlx99 {
namespace {

constexpr std::size_t kContactFields = 12;
constexpr std::size_t kAddressFields = 7;
constexpr std::size_t kBankFields = 3;
constexpr std::size_t kLinkFields = 3;

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
// have removed it while the dialog was open: then none is as good, least of all another address's.
template <class Layout>
Outcome ReadChosen(RecordCursor<Layout>& file, std::int32_t addressNumber, std::int32_t chosen,
                   Record<Layout>& record) {
  int status = file.GetEqual(Layout::byAddress, addressNumber);
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
  const int status = file.GetNext(Layout::byAddress);
  if (status == btrieve::kEndOfFile) return Outcome::kRead;
  if (status != btrieve::kSuccess) return Outcome::kUnreadable;
  if (file.Current()[Layout::addressNumber] != addressNumber) return Outcome::kRead;
  const std::int32_t chosen = choose(file, addressNumber);
  return chosen == 0 ? Outcome::kRead : ReadChosen(file, addressNumber, chosen, record);
}

// A contact person without a salutation of its own is addressed as its address is.
void AddLetterSalutation(AddressBook& book, std::int32_t addressNumber,
                         std::int32_t salutationNumber, ResultRecord& dest) {
  if (salutationNumber == 0) {
    LookupAddressLetterSalutation(book.addresses, book.salutations, addressNumber, dest);
  } else {
    LookupLetterSalutation(book.salutations, salutationNumber, dest);
  }
}

void ReadContactBlock(AddressBook& book, std::int32_t addressNumber, ResultRecord& dest) {
  using C = ContactPersonRecord;
  Record<C> contact;
  const Outcome outcome = ReadOneOf(book.contacts, addressNumber, ChooseContactPerson, contact);
  if (outcome == Outcome::kNone) dest.AddEmptyFields(kContactFields);
  if (outcome != Outcome::kRead) return;

  dest.AddField(contact[C::firstName]);
  dest.AddField(contact[C::name]);
  AddLetterSalutation(book, addressNumber, contact[C::salutationNumber], dest);
  LookupTitle(book.titles, contact[C::titleNumber], dest);
  for (const TextField& field : {C::nameAddition, C::freeText, C::shortField1, C::shortField2,
                                 C::shortField3, C::shortField4, C::shortField5, C::wideField}) {
    dest.AddField(contact[field]);
  }
}

// Returns what the case says of the address, for the link block.
PartyTexts ReadAddressBlock(AddressBook& book, const DataRoot& dataRoot,
                            const AddressRequest& request, ResultRecord& dest) {
  using A = AddressRecord;
  if (!FindAddress(book.addresses, request.addressNumber)) {
    dest.AddEmptyFields(kAddressFields);
    return {};
  }
  const Record<A> address = book.addresses.Current();
  AddStreet(address, dest);
  for (const TextField& field : {A::postalCode, A::place, A::secondPostalCode, A::secondPlace}) {
    dest.AddField(address[field]);
  }
  const PartyTexts texts = FindPartyTexts(dataRoot, request);
  dest.AddField({texts.addressAddition.data(), texts.addressAddition.size()});
  LookupNationality(dataRoot, address[A::nationalityNumber], dest);
  return texts;
}

void ReadBankBlock(AddressBook& book, std::int32_t addressNumber, ResultRecord& dest) {
  using B = BankConnectionRecord;
  Record<B> bank;
  const Outcome outcome = ReadOneOf(book.banks, addressNumber, ChooseBankConnection, bank);
  if (outcome == Outcome::kNone) dest.AddEmptyFields(kBankFields);
  if (outcome != Outcome::kRead) return;

  for (const TextField& field : {B::bankName, B::bankCode, B::accountNumber}) {
    dest.AddField(bank[field]);
  }
}

void ReadLinkBlock(AddressBook& book, const DataRoot& dataRoot, std::int32_t addressNumber,
                   const PartyTexts& texts, ResultRecord& dest) {
  if (!FindAddress(book.addresses, addressNumber)) {
    dest.AddEmptyFields(kLinkFields);
    return;
  }
  dest.AddField({texts.contactAddition.data(), texts.contactAddition.size()});
  LookupAddressLink(dataRoot, book.relations, texts.linkNumber, addressNumber, dest);
}

// Composes nothing when a file cannot be opened.
void ReadAddress(const AddressRequest& request, ResultRecord& dest) {
  const auto dataRoot = ReadDataRoot(kNoDataPathForAddresses);
  if (!dataRoot) return;
  AddressBook book(*dataRoot);
  if (!book.IsOpen()) return;

  ReadContactBlock(book, request.addressNumber, dest);
  const PartyTexts texts = ReadAddressBlock(book, *dataRoot, request, dest);
  ReadBankBlock(book, request.addressNumber, dest);
  ReadLinkBlock(book, *dataRoot, request.addressNumber, texts, dest);
}

std::int32_t DeliverAddress(const char* caseNumber, const char* addressNumber, char* record,
                            const char* linkNumber) {
  if (linkNumber != nullptr) lastRequest.linkNumber = LeadingNumber(linkNumber);
  const AddressRequest request{CaseNumberKey(caseNumber), LeadingNumber(addressNumber),
                               lastRequest.linkNumber};
  if (!EnsureRecordManager()) return 0;
  ResultRecord address;
  ReadAddress(request, address);
  address.DropLastEnd();
  return HandOver(address, record, HandOverForm::kWithEndMark);
}

}  // namespace

std::int32_t WINAPI ALesenDLL(const char* caseNumber, const char* addressNumber, char* record,
                              const char* linkNumber) {
  return PassGate("ALesenDLL", DeliverAddress, caseNumber, addressNumber, record, linkNumber);
}

}  // namespace qlx99
