// qlx99_bench FOLDER [OPTION...]: prints the table of docs/performance.md. FOLDER holds the offices
// (bench_office.h); the options are Google Benchmark's. Exit code 1 when a limit is missed.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string>

#include "bench/bench_office.h"
#include "bench/managers.h"
#include "bench/measurements.h"
#include "bench/table.h"
#include "platform/screen.h"

namespace {

// Nobody is there to read messages, and no measurement causes any.
class NobodyThere final : public platform::Screen {
 public:
  int ShowMessage(const platform::MessageBoxView& message) override {
    throw std::runtime_error("message: " + message.text);
  }
  void ShowDialog(platform::Dialog& dialog) override {
    dialog.Cancel();
    throw std::runtime_error("dialog: " + dialog.Title());
  }
};

int Run(int count, char** arguments) {
  bench::SetOffices(std::filesystem::absolute(arguments[1]));
  bench::LoadManagers();
  bench::RegisterExportMeasurements();
  bench::RegisterEmbeddedMeasurements();
  bench::RegisterOdbcMeasurements();
  bench::RegisterListMeasurements();
  bench::RegisterStartMeasurements();
  benchmark::Initialize(&count, arguments);
  bench::Table table;
  benchmark::RunSpecifiedBenchmarks(&table);
  return table.Misses() == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int count, char** arguments) {
  try {
    NobodyThere nobody;
    platform::SetScreen(&nobody);
    if (count == 4 && std::string(arguments[1]) == bench::kStartOption) {
      return bench::PrintStart(arguments[2], arguments[3]);
    }
    if (count >= 2) return Run(count, arguments);
    std::fputs("usage: qlx99_bench FOLDER [OPTION...]\n", stderr);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "qlx99_bench: %s\n", error.what());
  }
  return 2;
}
