// BListeInit and BListeNext: how many parties a case has, whatever their role, and the party at a
// position.
#include "addresses/address_file.h"
#include "addresses/contact_person_file.h"
#include "addresses/relation_file.h"
#include "addresses/salutation_file.h"
#include "caseparties/case_party_file.h"
#include "cases/case_file.h"
#include "frame/arguments.h"
#include "frame/call_gate.h"
#include "frame/exports.h"
#include "store/record_fields.h"

namespace qlx99 {
namespace {

// The fields of an entry that come from the address. Each is composed by itself, because the files
// are read in another order than the fields have.
struct AddressParts {
  ResultLine salutation;
  ResultLine name;
  ResultLine street;
};

// An address that is not there has an empty street and place, and no salutation field at all.
void ReadStreetAndSalutation(RecordCursor<AddressRecord>& addresses,
                             RecordCursor<SalutationRecord>& salutations,
                             std::int32_t addressNumber, AddressParts& parts) {
  using A = AddressRecord;
  using S = SalutationRecord;
  const auto* address = addresses.Find(A::byNumber, addressNumber);
  RecordFields(address, parts.street)
      .Add([&](const auto& found) { AddStreet(found, parts.street); })
      .Add(A::place);
  if (address == nullptr) return;
  RecordFields(salutations.Find(S::byNumber, (*address)[A::salutationNumber]), parts.salutation)
      .Add(S::salutation);
}

void ReadName(RecordCursor<ContactPersonRecord>& contacts, std::int32_t addressNumber,
              ResultLine& dest) {
  using C = ContactPersonRecord;
  RecordFields(contacts.Find(C::byAddress, addressNumber), dest).Add(C::name).Add(C::nameAddition);
}

// Adds fields 2 to 7. False when a file cannot be opened.
bool PartyAddressText(const DataRoot& dataRoot, std::int32_t addressNumber, ResultLine& dest) {
  RecordFile<ContactPersonRecord> contacts(dataRoot);
  RecordFile<AddressRecord> addresses(dataRoot, contacts);
  RecordFile<SalutationRecord> salutations(dataRoot, addresses);
  if (!salutations.IsOpen()) return false;

  AddressParts parts;
  ReadStreetAndSalutation(addresses, salutations, addressNumber, parts);
  ReadName(contacts, addressNumber, parts.name);
  dest.Append(parts.salutation.Bytes());
  dest.Append(parts.name.Bytes());
  dest.Append(parts.street.Bytes());
  dest.AddNumber(addressNumber);
  return true;
}

// Adds field 1, which is missing altogether when the relation is.
void AddRelationCode(RecordCursor<RelationRecord>& relations, std::int32_t relationId,
                     ResultLine& dest) {
  if (const auto* relation = relations.Find(RelationRecord::byId, relationId)) {
    dest.AddVerbatim((*relation)[RelationRecord::code]);
  }
}

// Adds fields 8 and 9, behind whatever text the others gave.
void AddPartyNumbers(const Record<CasePartyRecord>& party, ResultLine& dest) {
  const std::int32_t linkNumber = party[CasePartyRecord::addressLinkNumber];
  dest.EndAtFirstZero();
  if (linkNumber != 0) dest.AppendNumber(linkNumber);
  dest.AddEmptyField();
  dest.AppendNumber(party[CasePartyRecord::id]);
}

// Composes the party at a position. False when there is none, when it has no address, or when a
// file cannot be read.
bool ReadPartyListEntry(const CaseNumberKey& key, std::int32_t position, ResultLine& dest) {
  const auto dataRoot = ReadDataRoot(kNoDataPathForAddresses);
  if (!dataRoot) return false;
  RecordFile<CaseRecord> cases(*dataRoot);
  RecordFile<CasePartyRecord> parties(*dataRoot, cases);
  RecordFile<RelationRecord> relations(*dataRoot, parties);
  if (!relations.IsOpen()) return false;

  const std::int32_t caseId = FindCaseId(cases, key);
  if (caseId == kNoCase) return false;
  if (!WalkToPosition(parties.Walk(CasePartyRecord::byCase, caseId), position)) return false;

  const auto& party = parties.Current();
  const std::int32_t addressNumber = party[CasePartyRecord::addressNumber];
  AddRelationCode(relations, party[CasePartyRecord::relationId], dest);
  if (addressNumber == 0 || !PartyAddressText(*dataRoot, addressNumber, dest)) return false;
  AddPartyNumbers(party, dest);
  return true;
}

std::int32_t CountParties(const char* caseNumber) {
  return EnsureRecordManager() ? CountCaseParties(CaseNumberKey(caseNumber)) : 0;
}

// Two empty fields, and with them the result 0, tell the macro that the list has ended.
std::int32_t DeliverParty(const char* caseNumber, const char* index, char* buffer) {
  if (!EnsureRecordManager()) return 0;
  ResultLine party;
  if (!ReadPartyListEntry(CaseNumberKey(caseNumber), LeadingNumber(index), party)) {
    party = {};
    party.AddEmptyField();
    party.AddEmptyField();
  }
  return HandOver(party, buffer, HandOverForm::kWithEndMark);
}

}  // namespace

std::int32_t WINAPI BListeInit(const char* caseNumber) {
  return PassGate("BListeInit", CountParties, caseNumber);
}

std::int32_t WINAPI BListeNext(const char* caseNumber, const char* index, char* record) {
  return PassGate("BListeNext", DeliverParty, caseNumber, index, record);
}

}  // namespace qlx99
