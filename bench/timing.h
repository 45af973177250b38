// Times two ways of doing the same in turns, so that whatever else the machine does hits both
// alike, and keeps the medians: a ratio holds where times do not.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace bench {

class Samples {
 public:
  template <class Work>
  void Time(const Work& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double, std::micro> time = std::chrono::steady_clock::now() - begin;
    times_.push_back(time.count());
  }

  // In microseconds.
  double Median() {
    const auto middle = times_.begin() + static_cast<std::ptrdiff_t>(times_.size() / 2);
    std::nth_element(times_.begin(), middle, times_.end());
    return *middle;
  }

 private:
  std::vector<double> times_;
};

// What a row of the table needs; the names are the table's (table.h).
inline void Report(benchmark::State& state, double ours, double theirs) {
  state.counters["ours"] = ours;
  state.counters["theirs"] = theirs;
}

// `runs` is how often either way does the thing in one go.
template <class Ours, class Theirs>
void Compare(benchmark::State& state, const Ours& ours, const Theirs& theirs, int runs = 1) {
  Samples ourTimes;
  Samples theirTimes;
  for ([[maybe_unused]] auto turn : state) {
    ourTimes.Time(ours);
    theirTimes.Time(theirs);
  }
  Report(state, ourTimes.Median() / runs, theirTimes.Median() / runs);
}

}  // namespace bench
