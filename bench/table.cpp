#include "bench/table.h"

#include <cstdio>
#include <optional>

namespace bench {
namespace {

using Run = benchmark::BenchmarkReporter::Run;

std::optional<double> Counter(const Run& run, const char* name) {
  const auto found = run.counters.find(name);
  return found == run.counters.end() ? std::nullopt : std::optional(found->second.value);
}

// Three digits that count.
std::string Figure(double value) {
  char text[32];
  const int decimals = value < 1 ? 3 : value < 10 ? 2 : value < 100 ? 1 : 0;
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return text;
}

std::string Cell(std::optional<double> value) { return value ? Figure(*value) : ""; }

std::string Bound(std::optional<double> most, std::optional<double> mostTime,
                  std::optional<double> least) {
  if (mostTime) return "at most " + Figure(*mostTime) + " us";
  if (most) return "at most " + Figure(*most);
  return least ? "above " + Figure(*least) : "";
}

}  // namespace

bool Table::ReportContext(const Context& /*context*/) {
  std::puts("| what | us | against | us | ratio | limit | |");
  std::puts("|---|---:|---|---:|---:|---|---|");
  return true;
}

void Table::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) PrintRow(run);
  std::fflush(stdout);
}

void Table::PrintRow(const Run& run) {
  const std::string name = run.run_name.function_name;
  if (run.error_occurred) {
    std::printf("| %s | | %s | | | | not measured |\n", name.c_str(), run.error_message.c_str());
    ++misses_;
    return;
  }
  const auto ours = Counter(run, "ours");
  const auto theirs = Counter(run, "theirs");
  const auto most = Counter(run, "most");
  const auto mostTime = Counter(run, "most us");
  const auto least = Counter(run, "least");
  const auto ratio = theirs ? std::optional(*ours / *theirs) : std::nullopt;
  const double judged = ratio.value_or(*ours);
  const bool good = (!most || judged <= *most) && (!mostTime || *ours <= *mostTime) &&
                    (!least || judged > *least);
  misses_ += good ? 0 : 1;
  std::printf("| %s | %s | %s | %s | %s | %s | %s |\n", name.c_str(), Cell(ours).c_str(),
              run.report_label.c_str(), Cell(theirs).c_str(), Cell(ratio).c_str(),
              Bound(most, mostTime, least).c_str(),
              !most && !mostTime && !least ? ""
              : good                       ? "yes"
                                           : "**missed**");
}

}  // namespace bench
