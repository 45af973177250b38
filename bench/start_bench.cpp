// What does a word processor wait for, when its first macro calls the library?
#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>

#include "bench/bench_office.h"
#include "bench/measurements.h"
#include "bench/timing.h"
#include "frame/exports.h"
#include "store/result_line.h"
#include "testkit/embedded_manager.h"
#include "testkit/found_export.h"
#include "testkit/process.h"

namespace bench {
namespace {

// In microseconds, of a process of its own.
struct Start {
  double attach = 0;
  double firstCall = 0;
  double laterCall = 0;
};

Start StartOnce() {
  const auto library = testkit::ProductFolder() / testkit::LibraryFile("qlx99");
  const std::string command = "'" + testkit::ProgramPath().string() + "' " + kStartOption + " '" +
                              library.string() + "' '" + TheOffices().usual.string() + "'";
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> output(popen(command.c_str(), "r"), pclose);
  Start start;
  if (!output || std::fscanf(output.get(), "%lf %lf %lf", &start.attach, &start.firstCall,
                             &start.laterCall) != 3) {
    throw std::runtime_error("a process of its own could not be measured");
  }
  return start;
}

void MeasureStart(benchmark::State& state, double Start::*part) {
  std::vector<double> ours;
  std::vector<double> later;
  for ([[maybe_unused]] auto turn : state) {
    const Start start = StartOnce();
    ours.push_back(start.*part);
    later.push_back(start.laterCall);
  }
  std::ranges::sort(ours);
  std::ranges::sort(later);
  Report(state, ours[ours.size() / 2], later[later.size() / 2]);
  state.SetLabel("a later SLesenDLL");
}

}  // namespace

int PrintStart(const char* library, const char* office) {
  UseOffice(office);
  HMODULE module = nullptr;
  Samples attach;
  attach.Time([&] { module = LoadLibraryA(library); });
  if (module == nullptr) throw std::runtime_error(std::string(library) + " cannot be loaded");
  const decltype(&qlx99::SLesenDLL) read = testkit::FoundExport(module, "SLesenDLL");
  std::array<char, qlx99::kCallerBufferSize> record{};
  Samples first;
  first.Time([&] { read("10000001", record.data()); });
  Samples later;
  for (int i = 0; i < 20; ++i) later.Time([&] { read("10000001", record.data()); });
  std::printf("%f %f %f\n", attach.Median(), first.Median(), later.Median());
  return EXIT_SUCCESS;
}

void RegisterStartMeasurements() {
  Register("start: the library is attached",
           [](benchmark::State& state) { MeasureStart(state, &Start::attach); });
  Register("start: the first SLesenDLL, with the record manager and its files",
           [](benchmark::State& state) { MeasureStart(state, &Start::firstCall); });
}

}  // namespace bench
