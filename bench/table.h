// The results as rows of docs/performance.md.
#pragma once

#include <benchmark/benchmark.h>

namespace bench {

// One row a benchmark. The benchmark's label says what ours was measured against. Counters, times
// in microseconds: "ours"; "theirs", unless there is nothing to compare with; "most", the largest
// ratio that is good enough, "most us" the largest time of ours, "least" the smallest ratio.
class Table : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& context) override;
  void ReportRuns(const std::vector<Run>& runs) override;

  // Rows that are not good enough, or could not be measured.
  int Misses() const { return misses_; }

 private:
  void PrintRow(const Run& run);

  int misses_ = 0;
};

}  // namespace bench
