// The records of the office that most tests of exports begin with.
#include "support/export_test.h"

namespace qlx99::tests {
namespace {

void HasCases(Office& office) {
  office.Has<CaseRecord>(
      "id: 7, caseNumber: 12345678, userId: 17, shortCode: ZR 1, rubrum: Müller ./. Schmidt, "
      "firstDate: 01.01.2000, amount: 1234.5, longText: wegen Verkehrsunfalls, text30: dreißig, "
      "caseTypeId: 3, archiveEntryId: 5, text40: vierzig, currency: EUR");
  office.Has<CaseRecord>("id: 8, caseNumber: 12345679");
  office.Has<CaseRecord>("id: 6, caseNumber: 12345670");
  office.Has<CasePartyRecord>("id: 301, caseId: 6, addressNumber: 4712");
  office.Has<CasePartyRecord>(
      "id: 210, caseId: 7, addressNumber: 4711, relationId: 1, contactAddition: ohne Link, "
      "addressAddition: unten");
  office.Has<CasePartyRecord>("id: 302, caseId: 8, addressNumber: 4712, relationId: 1");
  office.Has<CasePartyRecord>("id: 303, caseId: 6, addressNumber: 4711, relationId: 1");
  office.Has<CasePartyRecord>(
      "id: 209, caseId: 7, addressNumber: 4712, relationId: 99, addressLinkNumber: 815");
  office.Has<CasePartyRecord>(
      "id: 208, caseId: 7, addressNumber: 4711, relationId: 1, addressLinkNumber: 815, "
      "contactAddition: z. Hd. Frau Weiß, addressAddition: Hinterhaus");
  office.Has<CasePartyRecord>(
      "id: 207, caseId: 7, addressNumber: 9999, relationId: 1, addressLinkNumber: -1");
  office.Has<FollowUpRecord>(
      "id: 1, caseId: 7, date: 02.01.2000, kindId: 3, text: Berufung begründen, userId: 17, "
      "partyRecordId: 209, flag: 0");
  office.Has<FollowUpRecord>("id: 2, caseId: 8, date: 02.01.2000, kindId: 3");
  office.Has<FollowUpRecord>(
      "id: 3, caseId: 7, kindId: -7, userId: 99, secondUserId: 17, partyRecordId: 999");
}

void HasAddresses(Office& office) {
  office.Has<AddressRecord>(
      "number: 4711, nationalityNumber: 4, salutationNumber: 1, street: Königsallee, houseNumber: "
      "12 a, postalCode: 40212, place: Düsseldorf, secondPostalCode: 40001, secondPlace: Postfach");
  office.Has<AddressRecord>("number: 4712, salutationNumber: 9, street: Am Weg, place: Köln");
  office.Has<ContactPersonRecord>(
      "number: 100, name: Müller, addressNumber: 4711, titleNumber: 9, firstName: Jörg, "
      "nameAddition: GmbH, freeText: frei, shortField1: 1, shortField2: 2, shortField3: 3, "
      "shortField4: 4, shortField5: 5, wideField: weit, salutationNumber: 2");
  office.Has<ContactPersonRecord>("number: 20, addressNumber: 4712, name: Groß & Klein");
  office.Has<BankConnectionRecord>(
      "number: 200, addressNumber: 4711, bankName: Sparkasse, bankCode: 300 501 10, accountNumber: "
      "47 11");
  office.Has<AddressLinkRecord>("id: 1, linkNumber: 815, addressNumber: 9999");
  office.Has<AddressLinkRecord>(
      "id: 2, linkNumber: 815, addressNumber: 4711, relationId: 1, linkText: bestellt 2001");
  office.Has<AddressLinkRecord>("id: 3, linkNumber: 816, addressNumber: 4712");
}

// Users and everything that other records only name by a number.
void HasCatalogues(Office& office) {
  office.Has<UserRecord>("number: 300, name: Zöllner, shortSign: Z");
  office.Has<UserRecord>("number: -2, name: Vormals");
  office.Has<UserRecord>(
      "number: 17, name: Meier, secondText: Rechtsanwältin, thirdText: m.meier, shortSign: MEI");
  office.Has<FollowUpKindRecord>("id: 3, name: Frist prüfen, number: 30");
  office.Has<FollowUpKindRecord>("id: -2, number: 5");
  office.Has<CaseTypeRecord>("id: 3, text: Verkehrsrecht");
  office.Has<ArchiveRecord>("id: 5, mark: Ä-ß2, date: 21.04.2001");
  office.Has<RelationRecord>("id: 1, designation: Vormund, code: 2 ");
  office.Has<SalutationRecord>(
      "number: 1, salutation: Familie, letterSalutation: Sehr geehrte Familie");
  office.Has<SalutationRecord>(
      "number: 2, salutation: Herrn, letterSalutation: Sehr geehrter Herr");
  office.Has<TitleRecord>("number: 9, title: Dr.");
  office.Has<NationalityRecord>("number: 4, nationality: österreichisch");
}

}  // namespace

// Filled once, by the first test, and copied by the others.
ExampleOfficeTest::ExampleOfficeTest() {
  namespace fs = std::filesystem;
  static const TemporaryFolder kFolder;
  const fs::path filled = kFolder.Path() / "data";
  if (!fs::exists(filled)) {
    HasCases(office);
    HasAddresses(office);
    HasCatalogues(office);
    ReleaseEmbedded();
    fs::copy(office.DataFolder(), filled);
  } else {
    fs::remove_all(office.DataFolder());
    fs::copy(filled, office.DataFolder());
  }
}

}  // namespace qlx99::tests
