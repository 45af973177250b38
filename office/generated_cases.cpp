#include "office/generated_cases.h"

#include <algorithm>
#include <bit>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "office/text_encoding.h"
#include "record_files.h"

namespace office {
namespace {

using namespace qlx99;

// Catalogue numbers of the sample office.
enum Relation { kClient = 1, kOpponent = 3, kOpposingCounsel = 4, kCourt = 6, kInsurer = 12 };
enum Salutation { kMr = 1, kMrs = 2, kSirs = 3 };
constexpr std::uint32_t kUsers = 5;
constexpr std::uint32_t kCaseTypes = 8;
constexpr std::uint32_t kFollowUpKinds = 6;

constexpr std::int32_t kFirstCaseNumber = 10'000'001;
constexpr std::int32_t kCasesPerTransaction = 500;
constexpr std::int32_t kCasesPerPoolAddress = 20;

// Texts to pick from, encoded once.
using Texts = std::vector<std::string>;

Texts Encoded(std::initializer_list<const char*> utf8) {
  Texts texts;
  for (const char* text : utf8) texts.push_back(Encode(text));
  return texts;
}

// The same numbers on every machine, which the standard's distributions are not.
class Dice {
 public:
  // 0 to sides - 1.
  std::uint32_t Roll(std::uint32_t sides) {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return static_cast<std::uint32_t>(state_ >> 33U) % sides;
  }

  const std::string& Pick(const Texts& texts) {
    return texts[Roll(static_cast<std::uint32_t>(texts.size()))];
  }

 private:
  std::uint64_t state_ = 20240501;
};

std::string Digits(std::uint32_t number, std::size_t width) {
  std::string digits = std::to_string(number);
  return std::string(width - std::min(width, digits.size()), '0') + digits;
}

class CaseGenerator {
 public:
  CaseGenerator(OfficeFiles& files, std::int32_t cases)
      : files_(files), poolSize_(cases / kCasesPerPoolAddress + 3) {
    for (std::int32_t i = 0; i < poolSize_; ++i) AddAddress();
  }

  void AddCase(std::int32_t id) {
    const std::string client = AddAddress();
    const std::int32_t clientAddress = addresses_;
    const std::string opponent = AddAddress();
    AddCaseRecord(id, client + " ./. " + opponent);
    AddParty(id, clientAddress, kClient);
    const std::int32_t clientParty = parties_;
    AddParty(id, addresses_, kOpponent);
    AddParty(id, PoolAddress(), kOpposingCounsel);
    AddParty(id, PoolAddress(), kCourt);
    AddParty(id, PoolAddress(), kInsurer);
    for (std::uint32_t left = dice_.Roll(5); left > 0; --left) AddFollowUp(id, clientParty);
  }

 private:
  std::int32_t PoolAddress() {
    return 1 + static_cast<std::int32_t>(dice_.Roll(static_cast<std::uint32_t>(poolSize_)));
  }

  // With a contact person or two, whose family name is returned, and up to two bank connections.
  std::string AddAddress() {
    auto address = NewRecord<AddressRecord>();
    address.Set(AddressRecord::number, ++addresses_);
    address.Set(AddressRecord::salutationNumber, kSirs);
    address.Set(AddressRecord::street, dice_.Pick(streets_));
    address.Set(AddressRecord::houseNumber, std::to_string(1 + dice_.Roll(180)));
    address.Set(AddressRecord::postalCode, Digits(1000 + dice_.Roll(98'000), 5));
    address.Set(AddressRecord::place, dice_.Pick(places_));
    files_.Insert(address);
    std::string name = dice_.Pick(names_);
    AddContactPerson(name);
    if (dice_.Roll(4) == 0) AddContactPerson(name);
    for (std::uint32_t left = dice_.Roll(3); left > 0; --left) AddBankConnection();
    return name;
  }

  void AddContactPerson(const std::string& name) {
    auto person = NewRecord<ContactPersonRecord>();
    person.Set(ContactPersonRecord::number, ++contacts_);
    person.Set(ContactPersonRecord::name, name);
    person.Set(ContactPersonRecord::addressNumber, addresses_);
    person.Set(ContactPersonRecord::firstName, dice_.Pick(firstNames_));
    person.Set(ContactPersonRecord::salutationNumber, dice_.Roll(2) == 0 ? kMr : kMrs);
    files_.Insert(person);
  }

  void AddBankConnection() {
    auto bank = NewRecord<BankConnectionRecord>();
    bank.Set(BankConnectionRecord::number, ++bankConnections_);
    bank.Set(BankConnectionRecord::addressNumber, addresses_);
    bank.Set(BankConnectionRecord::bankName, dice_.Pick(banks_));
    bank.Set(BankConnectionRecord::bankCode, "370" + Digits(dice_.Roll(100'000), 5));
    bank.Set(BankConnectionRecord::accountNumber, Digits(dice_.Roll(1'000'000'000), 10));
    files_.Insert(bank);
  }

  void AddCaseRecord(std::int32_t id, const std::string& rubrum) {
    auto record = NewRecord<CaseRecord>();
    record.Set(CaseRecord::id, id);
    record.Set(CaseRecord::caseNumber, std::to_string(kFirstCaseNumber + id - 1));
    record.Set(CaseRecord::userId, static_cast<std::int32_t>(1 + dice_.Roll(kUsers)));
    record.Set(CaseRecord::rubrum, rubrum);
    record.Set(CaseRecord::firstDate, Day());
    const double amount = dice_.Roll(10'000'000) / 100.0;
    record.Set(CaseRecord::amount, {std::bit_cast<std::uint64_t>(amount)});
    record.Set(CaseRecord::caseTypeId, static_cast<std::int32_t>(1 + dice_.Roll(kCaseTypes)));
    record.Set(CaseRecord::currency, "EUR");
    files_.Insert(record);
  }

  void AddParty(std::int32_t caseId, std::int32_t address, Relation relation) {
    auto party = NewRecord<CasePartyRecord>();
    party.Set(CasePartyRecord::id, ++parties_);
    party.Set(CasePartyRecord::caseId, caseId);
    party.Set(CasePartyRecord::addressNumber, address);
    party.Set(CasePartyRecord::relationId, relation);
    files_.Insert(party);
  }

  void AddFollowUp(std::int32_t caseId, std::int32_t party) {
    auto followUp = NewRecord<FollowUpRecord>();
    followUp.Set(FollowUpRecord::caseId, caseId);
    followUp.Set(FollowUpRecord::date, Day());
    followUp.Set(FollowUpRecord::kindId, static_cast<std::int32_t>(1 + dice_.Roll(kFollowUpKinds)));
    followUp.Set(FollowUpRecord::text, dice_.Pick(followUpTexts_));
    followUp.Set(FollowUpRecord::userId, static_cast<std::int32_t>(1 + dice_.Roll(kUsers)));
    followUp.Set(FollowUpRecord::partyRecordId, dice_.Roll(2) == 0 ? 0 : party);
    followUp.Set(FollowUpRecord::flag, kWrittenFlag);
    files_.Insert(followUp);
  }

  // In the years 2004 to 2025.
  std::uint16_t Day() { return static_cast<std::uint16_t>(38'000 + dice_.Roll(8'000)); }

  const Texts firstNames_ = Encoded({"Anna", "Bernd", "Christa", "Dieter", "Elke", "Frank",
                                     "Gisela", "Jörg", "Käthe", "Lothar", "Müzeyyen", "Stefan"});
  const Texts names_ = Encoded({"Bäcker", "Dohmen", "Esser", "Fußhöller", "Großmann", "Hürten",
                                "Jansen", "Königs", "Lützenkirchen", "Meier", "Schäfer", "Weiß"});
  const Texts streets_ = Encoded({"Aachener Straße", "Bahnhofstraße", "Dürener Straße", "Gartenweg",
                                  "Lindenallee", "Mühlengasse", "Rösrather Straße", "Schloßplatz"});
  const Texts places_ = Encoded({"Köln", "Bonn", "Düren", "Münster", "Nürnberg", "Gießen"});
  const Texts banks_ = Encoded({"Sparkasse", "Volksbank", "Städtische Bank"});
  const Texts followUpTexts_ = Encoded({"Zahlungseingang prüfen", "Stellungnahme der Gegenseite",
                                        "Rücksprache mit der Mandantschaft", "Frist notieren"});

  OfficeFiles& files_;
  Dice dice_;
  std::int32_t poolSize_;
  std::int32_t addresses_ = 0;
  std::int32_t contacts_ = 0;
  std::int32_t bankConnections_ = 0;
  std::int32_t parties_ = 0;
};

}  // namespace

void InsertGeneratedCases(const RecordManager& manager, OfficeFiles& files, std::int32_t cases,
                          const Progress& progress) {
  std::optional<Transaction> transaction(manager);
  CaseGenerator generator(files, cases);
  for (std::int32_t id = 1; id <= cases; ++id) {
    generator.AddCase(id);
    if (id % kCasesPerTransaction != 0 && id != cases) continue;
    transaction->Commit();
    progress(id, cases);
    if (id != cases) transaction.emplace(manager);
  }
}

}  // namespace office
