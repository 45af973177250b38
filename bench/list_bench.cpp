// What does a list cost for each of its entries? A Next export walks from the first record every
// time, so the cost grows with the position: each row gives a whole list's time by its entries, and
// beside it the walk's time for each record that it passes.
#include <array>
#include <stdexcept>
#include <string>

#include "bench/bench_office.h"
#include "bench/measurements.h"
#include "bench/timing.h"
#include "caseparties/case_party_file.h"
#include "followups/follow_up_file.h"
#include "frame/exports.h"
#include "office/new_office.h"
#include "office/office_files.h"
#include "office/record_manager.h"
#include "store/result_line.h"

namespace bench {
namespace {

using namespace qlx99;

constexpr std::int32_t kLengths[] = {10, 100, 1'000, 10'000};
constexpr double kLongestListLimit = 1500;  // microseconds an entry
constexpr std::int32_t kPositions = 10;     // of a list that are measured, evenly spread

using ListExport = std::int32_t WINAPI(const char* caseNumber, const char* index, char* record);

template <class Layout, class Fill>
void InsertMany(office::OfficeFiles& files, std::int32_t count, const Fill& fill) {
  for (std::int32_t i = 0; i < count; ++i) {
    auto record = office::NewRecord<Layout>();
    fill(record);
    files.Insert(record);
  }
}

// Its case i+1 has kLengths[i] more parties and follow-ups than a generated one.
std::filesystem::path OfficeOfLongLists() {
  auto folder = TheOffices().work / "lists";
  if (std::filesystem::exists(folder)) return folder;
  office::MakeGeneratedOffice(folder, std::size(kLengths), [](auto, auto) {});
  const office::RecordManager manager;
  office::OfficeFiles files(manager, folder);
  office::Transaction transaction(manager);
  std::int32_t party = 1'000'000;
  for (std::int32_t caseId = 1; caseId <= static_cast<std::int32_t>(std::size(kLengths));
       ++caseId) {
    const std::int32_t count = kLengths[caseId - 1];
    InsertMany<CasePartyRecord>(files, count, [&](auto& record) {
      record.Set(CasePartyRecord::id, ++party);
      record.Set(CasePartyRecord::caseId, caseId);
      record.Set(CasePartyRecord::addressNumber, 1);
      record.Set(CasePartyRecord::relationId, 1);
    });
    InsertMany<FollowUpRecord>(files, count, [&](auto& record) {
      record.Set(FollowUpRecord::caseId, caseId);
      record.Set(FollowUpRecord::kindId, 1);
      record.Set(FollowUpRecord::userId, 1);
    });
  }
  transaction.Commit();
  return folder;
}

void MeasureList(benchmark::State& state, ListExport* next, std::int32_t caseId) {
  UseOffice(OfficeOfLongLists());
  const std::string caseNumber = std::to_string(10'000'000 + caseId);
  const std::int32_t length = kLengths[caseId - 1];
  std::array<char, kCallerBufferSize> record{};
  const auto read = [&](std::int32_t position) {
    if (next(caseNumber.c_str(), std::to_string(position).c_str(), record.data()) == 0) {
      throw std::runtime_error("an entry is missing");
    }
  };
  Samples first;
  Samples list;
  for ([[maybe_unused]] auto turn : state) {
    first.Time([&] { read(1); });
    list.Time([&] {
      for (std::int32_t i = 1; i <= kPositions; ++i) read(i * length / kPositions);
    });
  }
  const double entry = list.Median() / kPositions;
  const double passed = length * (kPositions + 1.0) / (2.0 * kPositions);  // on the average
  state.counters["ours"] = entry;
  state.counters["theirs"] = (entry - first.Median()) / (passed - 1);
  if (length == std::end(kLengths)[-1]) state.counters["most us"] = kLongestListLimit;
  state.SetLabel("each record that the walk passes");
}

}  // namespace

void RegisterListMeasurements() {
  struct List {
    const char* name;
    ListExport* next;
  };
  for (const List& list : {List{"BListeNext", BListeNext}, List{"WVNext", WVNext}}) {
    for (std::int32_t caseId = 1; caseId <= static_cast<std::int32_t>(std::size(kLengths));
         ++caseId) {
      Register(
          std::string("an entry of ") + std::to_string(kLengths[caseId - 1]) + ": " + list.name,
          [list, caseId](benchmark::State& state) { MeasureList(state, list.next, caseId); });
    }
  }
}

}  // namespace bench
