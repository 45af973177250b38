#include "bench/case_picks.h"

#include <algorithm>
#include <array>
#include <optional>
#include <stdexcept>

#include "addresses/bank_connection_file.h"
#include "addresses/contact_person_file.h"
#include "bench/bench_office.h"
#include "caseparties/case_party_file.h"
#include "cases/case_file.h"
#include "followups/follow_up_file.h"
#include "frame/exports.h"
#include "store/result_line.h"

namespace bench {
namespace {

using namespace qlx99;

// Generated cases are numbered like this.
constexpr std::int32_t kFirstCaseNumber = 10'000'001;

// Of records that are numbered without a gap.
template <class IsThere>
std::int32_t HighestNumber(const IsThere& isThere) {
  std::int32_t number = 0;
  for (std::int32_t step = 1 << 30; step > 0; step /= 2) {
    if (isThere(number + step)) number += step;
  }
  return number;
}

std::string CaseNumberOf(std::int32_t caseId) {
  return std::to_string(std::int64_t{kFirstCaseNumber} + caseId - 1);
}

class Picker {
 public:
  explicit Picker(const DataRoot& root)
      : cases_(root),
        parties_(root),
        contacts_(root),
        banks_(root),
        followUps_(root),
        newFollowUpId_(std::to_string(1 + HighestNumber([this](std::int32_t id) {
                                        return followUps_.Find(FollowUpRecord::byId, id) != nullptr;
                                      }))) {}

  // A longer number is cut to that of a case, and no office has so many.
  std::int32_t CountCases() {
    return HighestNumber([this](std::int32_t id) {
      return id < 90'000'000 && FindCase(cases_, CaseNumberKey(CaseNumberOf(id).c_str()));
    });
  }

  std::optional<CasePick> Pick(std::int32_t caseId) {
    if (parties_.GetEqual(CasePartyRecord::byCase, caseId) != btrieve::kSuccess ||
        followUps_.GetEqual(FollowUpRecord::byCase, caseId) != btrieve::kSuccess) {
      return std::nullopt;
    }
    const std::int32_t client = parties_.Current()[CasePartyRecord::addressNumber];
    if (CountRecords(contacts_.Walk(ContactPersonRecord::byAddress, client)) != 1 ||
        CountRecords(banks_.Walk(BankConnectionRecord::byAddress, client)) > 1) {
      return std::nullopt;
    }
    return CasePick{CaseNumberOf(caseId), std::to_string(client),
                    std::to_string(followUps_.Current()[FollowUpRecord::id]), newFollowUpId_};
  }

 private:
  RecordFile<CaseRecord> cases_;
  RecordFile<CasePartyRecord> parties_;
  RecordFile<ContactPersonRecord> contacts_;
  RecordFile<BankConnectionRecord> banks_;
  RecordFile<FollowUpRecord> followUps_;
  std::string newFollowUpId_;
};

}  // namespace

std::vector<CasePick> PickCases(const std::filesystem::path& office, std::size_t count) {
  if (!EnsureRecordManager()) throw std::runtime_error("there is no record manager");
  Picker picker(DataRootOf(office));
  const std::int32_t cases = picker.CountCases();
  // Not every case will do.
  const auto candidates = static_cast<std::int32_t>(std::max<std::size_t>(count * 4, 100));
  const std::int32_t step = std::max(1, cases / candidates);
  std::vector<CasePick> picks;
  for (std::int32_t id = 1; id <= cases && picks.size() < count; id += step) {
    if (auto pick = picker.Pick(id)) picks.push_back(*std::move(pick));
  }
  if (picks.empty()) throw std::runtime_error("the office has no case to write a letter in");
  return picks;
}

void ReadLetter(const CasePick& pick) {
  std::array<char, kCallerBufferSize> record{};
  const char* const number = pick.caseNumber.c_str();
  const bool read = BLesenDLL("M ", number, "", "1", record.data()) != 0 &&
                    ALesenDLL(number, pick.addressNumber.c_str(), record.data(), "0") != 0 &&
                    SLesenDLL(number, record.data()) != 0;
  if (!read) throw std::runtime_error("there is no letter in case " + pick.caseNumber);
}

}  // namespace bench
