// What would a macro's author pick instead? The same letter's data by one query over ODBC.
#include <string>

#include "bench/bench_office.h"
#include "bench/case_picks.h"
#include "bench/measurements.h"
#include "bench/odbc.h"
#include "bench/plain_database.h"
#include "bench/timing.h"

namespace bench {
namespace {

constexpr std::size_t kCases = 50;
constexpr double kAhead = 1;
constexpr double kClose = 2.5;

std::filesystem::path Database() {
  const auto path = TheOffices().work / "plain.db";
  if (!std::filesystem::exists(path)) MakePlainDatabase(TheOffices().usual, path);
  return path;
}

// `query` fetches one case's letter; both go through the same cases.
template <class Query>
void CompareLetters(benchmark::State& state, const Query& query) {
  UseOffice(TheOffices().usual);
  const auto picks = PickCases(TheOffices().usual, kCases);
  std::size_t next = 0;
  const auto ours = [&] { ReadLetter(picks[next]); };
  const auto theirs = [&] {
    query(picks[next].caseNumber);
    next = (next + 1) % picks.size();
  };
  Compare(state, ours, theirs);
}

void MeasurePrepared(benchmark::State& state) {
  const OdbcConnection connection(Database());
  OdbcStatement statement(connection);
  std::string parameter(8, '\0');
  statement.Prepare(LetterQuery("?"), parameter);
  CompareLetters(state, [&](const std::string& caseNumber) {
    parameter.replace(0, parameter.size(), caseNumber);
    statement.Execute();
    statement.FetchRow();
  });
  state.counters["most"] = kClose;
  state.SetLabel("ODBC: one query, prepared once, kept connection");
}

void MeasureText(benchmark::State& state) {
  const OdbcConnection connection(Database());
  CompareLetters(state, [&](const std::string& caseNumber) {
    OdbcStatement statement(connection);
    statement.ExecuteText(LetterQuery("'" + caseNumber + "'"));
    statement.FetchRow();
  });
  state.counters["most"] = kAhead;
  state.SetLabel("ODBC: one query, sent as text, kept connection");
}

void MeasureConnecting(benchmark::State& state) {
  const auto database = Database();
  CompareLetters(state, [&](const std::string& caseNumber) {
    const OdbcConnection connection(database);
    OdbcStatement statement(connection);
    statement.ExecuteText(LetterQuery("'" + caseNumber + "'"));
    statement.FetchRow();
  });
  state.counters["most"] = kAhead;
  state.SetLabel("ODBC: one query, a connection for each");
}

}  // namespace

void RegisterOdbcMeasurements() {
  Register("the reading of a letter", MeasurePrepared);
  Register("the reading of a letter", MeasureText);
  Register("the reading of a letter", MeasureConnecting);
}

}  // namespace bench
