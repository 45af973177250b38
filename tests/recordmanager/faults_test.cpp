// Disks that are full and disks that fail, at every request in turn.
#include <optional>
#include <set>
#include <tuple>

#include "faulty_files.h"
#include "party_file.h"
#include "recordmanager/engine.h"
#include "recordmanager/sql.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;

std::optional<recordmanager::Engine> engine;  // of the process that the fault strikes

short WINAPI CallEngine(WORD operation, void* positionBlock, void* dataBuffer, ULONG* dataLength,
                        void* keyBuffer, BYTE keyLength, char keyNumber) {
  return static_cast<short>(
      engine->Serve({.operation = operation,
                     .positionBlock = static_cast<std::uint8_t*>(positionBlock),
                     .dataBuffer = static_cast<std::uint8_t*>(dataBuffer),
                     .dataLength = dataLength,
                     .keyBuffer = static_cast<std::uint8_t*>(keyBuffer),
                     .keyLength = keyLength,
                     .keyNumber = keyNumber}));
}

// What may be in a file: the cases of its records.
using Cases = std::multiset<int>;

// A process that works on a file with records of the cases 1 to 3, and what may be there then.
class Work {
 public:
  // One of everything; what depends on something that failed is not tried.
  void Do(const std::string& path) {
    if (!Succeeds(client_.Open(path))) {
      return;
    }
    Insert(11);
    Rekey(1, 12);
    Delete(2);
    const auto before = possible_;
    if (Succeeds(client_.Call(kBeginTransaction))) {
      Insert(13);
      Rekey(3, 14);
      if (!Succeeds(client_.Call(kEndTransaction))) {
        possible_.insert(before.begin(), before.end());
      }
    }
    Insert(15);
    Succeeds(client_.Close());
  }

  bool MayHaveLeft(const Cases& cases) const { return possible_.count(cases) != 0; }

 private:
  // The published ways of saying that a disk cannot be used.
  static bool Succeeds(int status) {
    EXPECT_TRUE(status == kSuccess || status == kIoError || status == kDiskFull ||
                status == kPermissionError)
        << status;
    return status == kSuccess;
  }

  // What succeeds is done; what fails is done wholly, when the disk failed late, or not at all.
  template <class Change>
  void Note(int status, Change change) {
    auto before = std::move(possible_);
    possible_ = Succeeds(status) ? std::set<Cases>{} : before;
    for (Cases cases : before) {
      change(cases);
      possible_.insert(cases);
    }
  }

  void Insert(int caseId) {
    Note(client_.Insert(MakeParty(caseId)), [=](Cases& cases) { cases.insert(caseId); });
  }

  void Rekey(int from, int to) {
    if (Succeeds(client_.Get(kGetEqual, kByCase, from))) {
      client_.record.caseId = to;
      Note(client_.Update(kByCase), [=](Cases& cases) {
        cases.erase(from);
        cases.insert(to);
      });
    }
  }

  void Delete(int caseId) {
    if (Succeeds(client_.Get(kGetEqual, kByCase, caseId))) {
      Note(client_.Delete(), [=](Cases& cases) { cases.erase(caseId); });
    }
  }

  Client client_{&CallEngine};
  std::set<Cases> possible_{{1, 2, 3}};
};

class Faults : public PartyFile,
               public testing::WithParamInterface<std::tuple<Fault, const char*>> {
 protected:
  using Connection = recordmanager::Connection;

  Faults() {
    for (const int caseId : {1, 2, 3}) {
      EXPECT_EQ(client.Insert(MakeParty(caseId)), kSuccess);
    }
    EXPECT_EQ(client.Close(), kSuccess);
    std::filesystem::copy_file(path, sound);
    Connection connection;
    EXPECT_EQ(connection.Open(sound, Connection::Way::kExisting), kSuccess);
    EXPECT_EQ(connection.Execute(std::get<const char*>(GetParam())), kSuccess);
  }

  // The next process finds all that was done, by every key, and works at once.
  static void ExpectSound(const std::string& file, const Work& work) {
    engine.emplace();
    Client reader{&CallEngine};
    ASSERT_EQ(reader.Open(file), kSuccess);
    for (const int key : {kByNumber, kByCase, kByRole, kByRank}) {
      Cases cases;
      for (WORD step = kGetFirst; reader.Call(step, key) == kSuccess; step = kGetNext) {
        cases.insert(reader.record.caseId);
      }
      EXPECT_TRUE(work.MayHaveLeft(cases))
          << "key " << key << ": " << testing::PrintToString(cases);
    }
    EXPECT_EQ(reader.Insert(MakeParty(16)), kSuccess);
    engine.reset();
    Connection connection;
    std::string verdict;
    EXPECT_EQ(connection.Open(file, Connection::Way::kExisting), kSuccess);
    EXPECT_EQ(connection.QueryText("PRAGMA integrity_check", verdict), kSuccess);
    EXPECT_EQ(verdict, "ok");
  }

  FaultyFiles files;
  std::string sound = InFolder("SOUND.KRV");
};

TEST_P(Faults, LoseNothingAndDamageNothing) {
  const Fault fault = std::get<Fault>(GetParam());
  const std::string file = InFolder("FAULTY.KRV");
  int n = 0;
  for (bool failed = true; failed && !HasFailure();) {
    SCOPED_TRACE("request " + std::to_string(++n));
    std::filesystem::remove(file);
    std::filesystem::copy_file(sound, file);
    files.Fail(fault, n, fault != Fault::kIoError || n % 2 == 0);
    engine.emplace();
    Work work;
    work.Do(file);
    engine.reset();
    failed = files.Heal();
    ExpectSound(file, work);
  }
  EXPECT_GT(n, 2) << "no fault has struck";
}

INSTANTIATE_TEST_SUITE_P(
    OfTheDisk, Faults,
    testing::Combine(testing::Values(Fault::kFull, Fault::kIoError, Fault::kCannotOpen),
                     testing::Values("PRAGMA journal_mode = WAL", "PRAGMA journal_mode = DELETE")));

}  // namespace
}  // namespace recordmanager_tests
