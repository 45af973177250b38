#include "support/example_office.h"

#include "record_files.h"

namespace qlx99::tests {
namespace {

void HasCases(Office& office) {
  using C = CaseRecord;
  using F = FollowUpRecord;
  using P = CasePartyRecord;
  office.Has<C>(C::id, 7, C::caseNumber, "12345678", C::userId, 17, C::shortCode, "ZR 1", C::rubrum,
                "Müller ./. Schmidt", C::firstDate, 36524, C::secondDate, 65535, C::amount, 1234.5,
                C::longText, "wegen Verkehrsunfalls", C::text30, "dreißig", C::caseTypeId, 3,
                C::archiveEntryId, 5, C::text40, "vierzig", C::currency, "EUR");
  office.Has<C>(C::id, 8, C::caseNumber, "12345679");
  office.Has<C>(C::id, 6, C::caseNumber, "12345670");
  office.Has<P>(P::id, 301, P::caseId, 6, P::addressNumber, 4712);
  office.Has<P>(P::id, 210, P::caseId, 7, P::addressNumber, 4711, P::relationId, 1,
                P::contactAddition, "ohne Link", P::addressAddition, "unten");
  office.Has<P>(P::id, 302, P::caseId, 8, P::addressNumber, 4712, P::relationId, 1);
  office.Has<P>(P::id, 303, P::caseId, 6, P::addressNumber, 4711, P::relationId, 1);
  office.Has<P>(P::id, 209, P::caseId, 7, P::addressNumber, 4712, P::relationId, 99,
                P::addressLinkNumber, 815);
  office.Has<P>(P::id, 208, P::caseId, 7, P::addressNumber, 4711, P::relationId, 1,
                P::addressLinkNumber, 815, P::contactAddition, "z. Hd. Frau Weiß",
                P::addressAddition, "Hinterhaus");
  office.Has<P>(P::id, 207, P::caseId, 7, P::addressNumber, 9999, P::relationId, 1,
                P::addressLinkNumber, -1);
  office.Has<F>(F::id, 1, F::caseId, 7, F::date, 36525, F::kindId, 3, F::text, "Berufung begründen",
                F::userId, 17, F::partyRecordId, 209, F::flag, "0");
  office.Has<F>(F::id, 2, F::caseId, 8, F::date, 36525, F::kindId, 3);
  office.Has<F>(F::id, 3, F::caseId, 7, F::date, 65535, F::kindId, -7, F::userId, 99,
                F::secondUserId, 17, F::partyRecordId, 999);
}

void HasAddresses(Office& office) {
  using A = AddressRecord;
  using B = BankConnectionRecord;
  using C = ContactPersonRecord;
  using L = AddressLinkRecord;
  office.Has<A>(A::number, 4711, A::nationalityNumber, 4, A::salutationNumber, 1, A::street,
                "Königsallee", A::houseNumber, "12 a", A::postalCode, "40212", A::place,
                "Düsseldorf", A::secondPostalCode, "40001", A::secondPlace, "Postfach");
  office.Has<A>(A::number, 4712, A::salutationNumber, 9, A::street, "Am Weg", A::place, "Köln");
  office.Has<C>(C::number, 100, C::name, "Müller", C::addressNumber, 4711, C::titleNumber, 9,
                C::firstName, "Jörg", C::nameAddition, "GmbH", C::freeText, "frei", C::shortField1,
                "1", C::shortField2, "2", C::shortField3, "3", C::shortField4, "4", C::shortField5,
                "5", C::wideField, "weit", C::salutationNumber, 2);
  office.Has<C>(C::number, 20, C::addressNumber, 4712, C::name, "Groß & Klein");
  office.Has<B>(B::number, 200, B::addressNumber, 4711, B::bankName, "Sparkasse", B::bankCode,
                "300 501 10", B::accountNumber, "47 11");
  office.Has<L>(L::id, 1, L::linkNumber, 815, L::addressNumber, 9999);
  office.Has<L>(L::id, 2, L::linkNumber, 815, L::addressNumber, 4711, L::relationId, 1, L::linkText,
                "bestellt 2001");
  office.Has<L>(L::id, 3, L::linkNumber, 816, L::addressNumber, 4712);
}

// Users and everything that other records only name by a number.
void HasCatalogues(Office& office) {
  using A = ArchiveRecord;
  using K = FollowUpKindRecord;
  using N = NationalityRecord;
  using R = RelationRecord;
  using S = SalutationRecord;
  using T = TitleRecord;
  using U = UserRecord;
  office.Has<U>(U::number, 300, U::name, "Zöllner", U::shortSign, "Z");
  office.Has<U>(U::number, -2, U::name, "Vormals");
  office.Has<U>(U::number, 17, U::name, "Meier", U::secondText, "Rechtsanwältin", U::thirdText,
                "m.meier", U::shortSign, "MEI");
  office.Has<K>(K::id, 3, K::name, "Frist prüfen", K::number, 30);
  office.Has<K>(K::id, -2, K::name, "", K::number, 5);
  office.Has<CaseTypeRecord>(CaseTypeRecord::id, 3, CaseTypeRecord::text, "Verkehrsrecht");
  office.Has<A>(A::id, 5, A::mark,
                "\x8E-\xE1"
                "2",
                A::date, 37000);  // in code page 850
  office.Has<R>(R::id, 1, R::designation, "Vormund", R::code, "2 ");
  office.Has<S>(S::number, 1, S::salutation, "Familie", S::letterSalutation,
                "Sehr geehrte Familie");
  office.Has<S>(S::number, 2, S::salutation, "Herrn", S::letterSalutation, "Sehr geehrter Herr");
  office.Has<T>(T::number, 9, T::title, "Dr.");
  office.Has<N>(N::number, 4, N::nationality, "österreichisch");
}

}  // namespace

// Filled once, by the first test, and copied by the others.
ExampleOfficeTest::ExampleOfficeTest() {
  namespace fs = std::filesystem;
  static const TemporaryFolder kFilled;
  if (fs::is_empty(kFilled.Path())) {
    HasCases(office);
    HasAddresses(office);
    HasCatalogues(office);
    ReleaseEmbedded();
    fs::copy(office.DataFolder(), kFilled.Path());
  } else {
    fs::remove_all(office.DataFolder());
    fs::copy(kFilled.Path(), office.DataFolder());
  }
}

}  // namespace qlx99::tests
