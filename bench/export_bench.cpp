// What does the library add to the record manager's calls, and what does an office's size add to an
// export?
#include <algorithm>
#include <array>
#include <functional>
#include <stdexcept>
#include <string>

#include "bench/bench_office.h"
#include "bench/case_picks.h"
#include "bench/managers.h"
#include "bench/measurements.h"
#include "bench/timing.h"
#include "frame/exports.h"
#include "store/result_line.h"

namespace bench {
namespace {

using namespace qlx99;

constexpr std::size_t kCases = 50;
constexpr double kLibraryLimit = 1.05;
constexpr double kGrowthLimit = 1.5;

std::array<char, kCallerBufferSize> record;

void Require(bool delivered) {
  if (!delivered) throw std::runtime_error("an export delivered nothing");
}

void WriteNewFollowUp(const CasePick& pick) {
  Require(WVNew(pick.caseNumber.c_str(), "1", "01.02.2030", "1", "0", "0", "Frist") != 0);
}

struct MeasuredExport {
  const char* name;
  std::function<void(const CasePick&)> call;
};

const MeasuredExport kExports[] = {
    {"UserInit", [](const CasePick&) { Require(UserInit() != 0); }},
    {"UserNext", [](const CasePick&) { Require(UserNext("3", record.data()) != 0); }},
    {"ZtkodoliInit", [](const CasePick&) { Require(ZtkodoliInit() != 0); }},
    {"ZtkodoliNext", [](const CasePick&) { Require(ZtkodoliNext("3", record.data()) != 0); }},
    {"WVInit", [](const CasePick& pick) { Require(WVInit(pick.caseNumber.c_str()) != 0); }},
    {"WVNext",
     [](const CasePick& pick) {
       Require(WVNext(pick.caseNumber.c_str(), "1", record.data()) != 0);
     }},
    {"SLesenDLL",
     [](const CasePick& pick) { Require(SLesenDLL(pick.caseNumber.c_str(), record.data()) != 0); }},
    {"ALesenDLL",
     [](const CasePick& pick) {
       Require(ALesenDLL(pick.caseNumber.c_str(), pick.addressNumber.c_str(), record.data(), "0") !=
               0);
     }},
    {"BLesenDLL",
     [](const CasePick& pick) {
       Require(BLesenDLL("M ", pick.caseNumber.c_str(), "", "1", record.data()) != 0);
     }},
    {"BListeInit", [](const CasePick& pick) { Require(BListeInit(pick.caseNumber.c_str()) != 0); }},
    {"BListeNext",
     [](const CasePick& pick) {
       Require(BListeNext(pick.caseNumber.c_str(), "2", record.data()) != 0);
     }},
    {"the reading of a letter", ReadLetter},
    {"WVNew, WVDelete",
     [](const CasePick& pick) {
       WriteNewFollowUp(pick);
       Require(WVDelete(pick.newFollowUpId.c_str()) != 0);
     }},
    {"WVChange",
     [](const CasePick& pick) {
       Require(WVChange(pick.followUpId.c_str(), "2", "02.02.2030", "1", "0", "0", "Frist") != 0);
     }},
    {"GetDokuNr", [](const CasePick& pick) { Require(GetDokuNr(pick.caseNumber.c_str()) > 0); }},
};

// Does it several times in a go.
template <class Work>
auto Repeated(const Work& work, int runs) {
  return [&work, runs] {
    for (int i = 0; i < runs; ++i) work();
  };
}

// So many that each way finds the processor's caches as it left them, and so few that a busy
// machine seldom interrupts.
template <class Work>
int RunsInAGo(const Work& work) {
  constexpr double kLongest = 100;  // microseconds
  Samples once;
  for (int i = 0; i < 5; ++i) once.Time(work);
  return std::clamp(static_cast<int>(kLongest / once.Median()), 1, 20);
}

void MeasureLibrary(benchmark::State& state, const MeasuredExport& measured) {
  UseOffice(TheOffices().usual);
  const CasePick pick = PickCases(TheOffices().usual, 1).front();
  const auto call = [&] { measured.call(pick); };
  call();  // a document number's first use makes its record
  BareCalls bare(CallsOf(call));
  const auto bareCalls = [&] { bare.Run(); };
  const int runs = RunsInAGo(bareCalls);
  Compare(state, Repeated(call, runs), Repeated(bareCalls, runs), runs);
  state.counters["most"] = kLibraryLimit;
  state.SetLabel("its " + std::to_string(bare.Size()) + " calls made bare");
}

// Time that the library itself takes for each of the record manager's calls.
void MeasureLibraryInMemory(benchmark::State& state, const MeasuredExport& measured) {
  UseOffice(TheOffices().usual);
  const CasePick pick = PickCases(TheOffices().usual, 1).front();
  const auto call = [&] { measured.call(pick); };
  const Calls calls = CallsOf(call);
  BareCalls bare(calls);
  const auto bareCalls = [&] { bare.Run(); };
  UseMemory(calls);
  const int runs = RunsInAGo(call);
  Compare(state, Repeated(call, runs), Repeated(bareCalls, runs),
          runs * static_cast<int>(calls.size()));
  UseEmbedded();
  state.SetLabel("a call of " + std::to_string(calls.size()) + ", bare and answered from memory");
}

// Letters in one office and in the other, in turns; the cases differ from call to call.
void MeasureGrowth(benchmark::State& state, const MeasuredExport& measured) {
  const Offices& offices = TheOffices();
  const auto large = PickCases(offices.large, kCases);
  const auto small = PickCases(offices.small, kCases);
  Samples largeTimes;
  Samples smallTimes;
  const auto callAll = [&](const auto& office, const auto& picks, Samples& samples) {
    UseOffice(office);
    measured.call(picks.front());  // opens the files, if they were not used for a while
    for (const CasePick& pick : picks) samples.Time([&] { measured.call(pick); });
  };
  // Once untimed, so that no disk is measured.
  Samples untimed;
  callAll(offices.large, large, untimed);
  callAll(offices.small, small, untimed);
  for ([[maybe_unused]] auto turn : state) {
    callAll(offices.large, large, largeTimes);
    callAll(offices.small, small, smallTimes);
  }
  Report(state, largeTimes.Median(), smallTimes.Median());
  state.counters["most"] = kGrowthLimit;
  state.SetLabel("the office of 100 cases");
}

}  // namespace

void RegisterExportMeasurements() {
  for (const MeasuredExport& measured : kExports) {
    Register(std::string("library: ") + measured.name,
             [&measured](benchmark::State& state) { MeasureLibrary(state, measured); });
  }
  for (const MeasuredExport& measured : kExports) {
    Register(std::string("library alone: ") + measured.name,
             [&measured](benchmark::State& state) { MeasureLibraryInMemory(state, measured); });
  }
  for (const MeasuredExport& measured : kExports) {
    Register(std::string("large office: ") + measured.name,
             [&measured](benchmark::State& state) { MeasureGrowth(state, measured); });
  }
}

}  // namespace bench
