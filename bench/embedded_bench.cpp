// What does the embedded record manager add to SQLite?
#include <array>
#include <cstring>
#include <random>
#include <stdexcept>

#include "bench/bench_office.h"
#include "bench/measurements.h"
#include "bench/plain_sqlite.h"
#include "bench/timing.h"
#include "btrieve/file_description.h"
#include "caseparties/case_party_file.h"
#include "recordmanager/key.h"
#include "testkit/embedded_manager.h"

namespace bench {
namespace {

using qlx99::CasePartyRecord;
using Entry = recordmanager::Entry;

constexpr double kReadLimit = 1.5;
constexpr double kOpenLimit = 5;    // microseconds
constexpr double kStepLimit = 0.2;  // microseconds
constexpr int kReads = 50;

// An integer key, as the record manager has it.
recordmanager::Key IntegerKey(unsigned flags) {
  return recordmanager::Key(
      btrieve::DescribeKey(0, sizeof(std::int32_t), btrieve::kIntegerKey, flags));
}

Entry EntryOf(std::int32_t number, const recordmanager::Key& key, std::uint64_t change = 0) {
  std::array<std::uint8_t, sizeof number> value{};
  std::memcpy(value.data(), &number, sizeof number);
  return key.Make(value.data(), change);
}

std::span<const std::uint8_t> BytesOf(const Entry& entry) {
  return std::span(entry.bytes).first(entry.size);
}

// Copies of the usual office's case-party file, made before anything opens it.
std::filesystem::path OurCopy() { return TheOffices().work / "ours.krv"; }
std::filesystem::path TheirCopy() { return TheOffices().work / "theirs.krv"; }

// One of them, opened as the library opens files.
class PartyFile {
 public:
  PartyFile() { Open(); }
  ~PartyFile() { Close(); }
  PartyFile(const PartyFile&) = delete;
  PartyFile& operator=(const PartyFile&) = delete;

  void Open() { btrieve::Must(client_.Open(path_)); }
  void Close() { btrieve::Must(client_.Close()); }

  void GetEqual(std::int32_t id) {
    std::memcpy(client_.key.data(), &id, sizeof id);
    Call(btrieve::kGetEqual);
  }
  void GetFirst() { Call(btrieve::kGetFirst); }
  void GetNext() { Call(btrieve::kGetNext); }
  void Insert(std::int32_t id) {
    std::memcpy(record_.data(), &id, sizeof id);
    Call(btrieve::kInsert);
  }

 private:
  void Call(WORD operation) { btrieve::Must(client_.Call(operation, 0, record_)); }

  std::string path_ = OurCopy().string();
  btrieve::Client client_{btrieve::EntryPointOf(testkit::EmbeddedCall())};
  std::array<char, CasePartyRecord::file.length> record_{};
};

constexpr const char* kEqualSql =
    "SELECT id, version, key0, data FROM record WHERE key0 = ?1 LIMIT 1";
constexpr const char* kNextSql =
    "SELECT id, version, key0, data FROM record WHERE key0 > ?1 ORDER BY key0 LIMIT 1";
constexpr const char* kStepSql = "SELECT id, version, key0, data FROM record ORDER BY key0";

void SetUpConnection(PlainConnection& connection) {
  connection.Execute("PRAGMA synchronous = FULL; PRAGMA cache_size = -2048");
}

// The same with SQLite alone.
class PlainPartyFile {
 public:
  PlainPartyFile() : connection_(TheirCopy()) { SetUpConnection(connection_); }

  void GetEqual(std::int32_t id) {
    const Entry entry = EntryOf(id, byId_);
    equal_.Bind(1, BytesOf(entry));
    ReadRow(equal_);
    equal_.Reset();
  }
  void GetNext(std::int32_t id) {
    const Entry entry = EntryOf(id, byId_);
    next_.Bind(1, BytesOf(entry));
    ReadRow(next_);
    next_.Reset();
  }
  void Step() { ReadRow(step_); }
  void StopStepping() { step_.Reset(); }

  void Insert(std::int32_t id) {
    begin_.Run();
    change_.Run();
    readChange_.Step();
    const std::int64_t change = readChange_.Integer(0);
    readChange_.Reset();
    std::memcpy(record_.data(), &id, sizeof id);
    const Entry idEntry = EntryOf(id, byId_);
    const Entry caseEntry = EntryOf(0, byCase_, static_cast<std::uint64_t>(change));
    insert_.Bind(1, change);
    insert_.Bind(2, record_);
    insert_.Bind(3, BytesOf(idEntry));
    insert_.Bind(4, BytesOf(caseEntry));
    insert_.Run();
    commit_.Run();
  }

 private:
  void ReadRow(PlainStatement& statement) {
    if (!statement.Step()) throw std::runtime_error("there is no such record");
    statement.Read(3, record_);
  }

  recordmanager::Key byId_ = IntegerKey(0);
  recordmanager::Key byCase_ = IntegerKey(btrieve::kKeyDuplicates);
  PlainConnection connection_;
  PlainStatement equal_{connection_.Handle(), kEqualSql};
  PlainStatement next_{connection_.Handle(), kNextSql};
  PlainStatement step_{connection_.Handle(), kStepSql};
  PlainStatement begin_{connection_.Handle(), "BEGIN IMMEDIATE"};
  PlainStatement change_{connection_.Handle(),
                         "UPDATE file SET changes = changes + 1 WHERE rowid = 1"};
  PlainStatement readChange_{connection_.Handle(), "SELECT changes FROM file WHERE rowid = 1"};
  PlainStatement insert_{connection_.Handle(),
                         "INSERT INTO record(version, id, data, key0, key1) "
                         "VALUES(?1, ?1, ?2, ?3, ?4)"};
  PlainStatement commit_{connection_.Handle(), "COMMIT"};
  std::array<std::uint8_t, CasePartyRecord::file.length> record_{};
};

class Numbers {
 public:
  std::int32_t Next() { return distribution_(engine_); }

 private:
  std::minstd_rand engine_;
  std::uniform_int_distribution<std::int32_t> distribution_{1, 40'000};
};

void MeasureOpen(benchmark::State& state) {
  PartyFile keeper;  // the file is known
  PartyFile file;
  Samples times;
  for ([[maybe_unused]] auto turn : state) {
    file.Close();
    times.Time([&] { file.Open(); });
  }
  state.counters["ours"] = times.Median();
  state.counters["most us"] = kOpenLimit;
}

void MeasureOpenAndClose(benchmark::State& state) {
  PartyFile file;
  const auto ours = [&] {
    file.Close();
    file.Open();
  };
  const auto theirs = [] {
    PlainConnection connection(TheirCopy());
    SetUpConnection(connection);
    PlainStatement statement(connection.Handle(), kEqualSql);
  };
  Compare(state, ours, theirs);
  state.counters["most"] = 1;
  state.SetLabel("SQLite: open, prepare one statement, close");
}

void MeasureGetEqual(benchmark::State& state) {
  PartyFile file;
  PlainPartyFile plain;
  Numbers ourNumbers;
  Numbers theirNumbers;
  const auto ours = [&] {
    for (int i = 0; i < kReads; ++i) file.GetEqual(ourNumbers.Next());
  };
  const auto theirs = [&] {
    for (int i = 0; i < kReads; ++i) plain.GetEqual(theirNumbers.Next());
  };
  Compare(state, ours, theirs, kReads);
  state.counters["most"] = kReadLimit;
  state.SetLabel("SQLite: prepared search");
}

void MeasureGetNext(benchmark::State& state) {
  PartyFile file;
  PlainPartyFile plain;
  std::int32_t position = 0;
  const auto ours = [&] {
    file.GetEqual(++position);
    for (int i = 1; i < kReads; ++i) file.GetNext();
  };
  const auto theirs = [&] {
    plain.GetEqual(position);
    for (int i = 1; i < kReads; ++i) plain.GetNext(position + i - 1);
  };
  Compare(state, ours, theirs, kReads);
  state.counters["most"] = kReadLimit;
  state.SetLabel("SQLite: prepared search for the next one");
}

void MeasureWalk(benchmark::State& state) {
  PartyFile file;
  PlainPartyFile plain;
  const auto ours = [&] {
    file.GetFirst();
    for (int i = 1; i < kReads; ++i) file.GetNext();
  };
  const auto theirs = [&] {
    for (int i = 0; i < kReads; ++i) plain.Step();
    plain.StopStepping();
  };
  Compare(state, ours, theirs, kReads);
  state.counters["most us"] = kStepLimit;
  state.SetLabel("SQLite: one statement's next row, which sees no later change");
}

// Through the whole file, again and again: no record is still known from the last time.
void MeasureFirstWalk(benchmark::State& state) {
  PartyFile file;
  PlainPartyFile plain;
  constexpr int kSteps = 1'000;
  constexpr int kTurns = 39;
  int turn = 0;
  const auto ours = [&] {
    if (turn % kTurns == 0) file.GetFirst();
    for (int i = 0; i < kSteps; ++i) file.GetNext();
  };
  const auto theirs = [&] {
    if (turn++ % kTurns == 0) plain.StopStepping();
    for (int i = 0; i < kSteps; ++i) plain.Step();
  };
  Compare(state, ours, theirs, kSteps);
  state.SetLabel("SQLite: one statement's next row, which sees no later change");
}

void MeasureInsert(benchmark::State& state) {
  PartyFile file;
  PlainPartyFile plain;
  // Measured in several goes.
  static std::int32_t ourNumber = 100'000'000;
  static std::int32_t theirNumber = 100'000'000;
  Compare(
      state, [&] { file.Insert(ourNumber++); }, [&] { plain.Insert(theirNumber++); });
  state.counters["most"] = kReadLimit;
  state.SetLabel("SQLite: prepared statements, as durable");
}

}  // namespace

void RegisterEmbeddedMeasurements() {
  const auto parties = TheOffices().usual / CasePartyRecord::file.name;
  for (const auto& copy : {OurCopy(), TheirCopy()}) std::filesystem::copy_file(parties, copy);
  Register("embedded: Open of a known file", MeasureOpen);
  Register("embedded: Open and Close of a known file", MeasureOpenAndClose);
  Register("embedded: Get Equal", MeasureGetEqual);
  Register("embedded: Get Next", MeasureGetNext);
  Register("embedded: Get Next", MeasureWalk);
  Register("embedded: Get Next to records not read before", MeasureFirstWalk);
  Register("embedded: Insert", MeasureInsert);
}

}  // namespace bench
