// The measurements, by what they are about. They are registered in the table's order.
#pragma once

#include <benchmark/benchmark.h>

#include <exception>
#include <string>
#include <utility>

namespace bench {

void RegisterExportMeasurements();
void RegisterEmbeddedMeasurements();
void RegisterOdbcMeasurements();
void RegisterListMeasurements();
void RegisterStartMeasurements();

// What cannot be measured is said in its row.
template <class Measure>
void Register(const std::string& name, Measure measure) {
  benchmark::RegisterBenchmark(name.c_str(), [measure = std::move(measure)](auto& state) {
    try {
      measure(state);
    } catch (const std::exception& error) {
      state.SkipWithError(error.what());
    }
  });
}

// The program is called like this by itself, to see what a start takes (start_bench.cpp).
inline constexpr const char* kStartOption = "--start";
int PrintStart(const char* library, const char* office);

}  // namespace bench
