// Disks that are full and disks that fail, at every request in turn.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <optional>
#include <set>
#include <string>
#include <tuple>

#include "recordmanager/engine.h"
#include "recordmanager/faulty_files.h"
#include "recordmanager/sql.h"
#include "support/temporary_folder.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;

struct Record {
  std::int32_t number = 0;  // key 0: autoincrement
  std::int32_t caseId = 0;  // key 1: integer, duplicates, modifiable
};
constexpr int kByNumber = 0, kByCase = 1;

// A process with one file.
class Client {
 public:
  int Call(WORD operation, int keyNumber, void* data, std::size_t size) {
    auto length = static_cast<std::uint16_t>(size);
    return engine_.Serve({.operation = operation,
                          .positionBlock = block_.data(),
                          .dataBuffer = static_cast<std::uint8_t*>(data),
                          .dataLength = &length,
                          .keyBuffer = key_.data(),
                          .keyLength = key_.size(),
                          .keyNumber = keyNumber});
  }
  int Call(WORD operation, int keyNumber = kByNumber) {
    return Call(operation, keyNumber, &record, sizeof record);
  }

  void SetKey(const std::string& path) {
    path.copy(reinterpret_cast<char*>(key_.data()), key_.size());
  }

  int Create(const std::string& path) {
    constexpr std::uint16_t kFree = kKeyDuplicates | kKeyModifiable | kKeyExtendedType;
    struct {
      FileDescription file{sizeof(Record), 4096, 2, 0, 0, 0, 0, 0, 0};
      KeyDescription byNumber{1, 4, kKeyExtendedType, 0, kAutoincrementKey, 0, 0, 0, 0};
      KeyDescription byCase{5, 4, kFree, 0, kIntegerKey, 0, 0, 0, 0};
    } description;
    SetKey(path);
    return Call(kCreate, 0, &description, sizeof description);
  }

  int Open(const std::string& path) {
    SetKey(path);
    return Call(kOpen, kOpenNormal);
  }

  int Insert(int caseId) {
    record = {0, caseId};
    return Call(kInsert);
  }

  int Find(int caseId) {
    std::memcpy(key_.data(), &caseId, sizeof caseId);
    return Call(kGetEqual, kByCase);
  }

  Record record;

 private:
  recordmanager::Engine engine_;
  std::array<std::uint8_t, kPositionBlockSize> block_{};
  std::array<std::uint8_t, kMaxKeyLength> key_{};
};

// What may be in a file: the cases of its records.
using Cases = std::multiset<int>;

// A process that works on a file with records of the cases 1 to 3, and what may be there then.
class Work {
 public:
  // One of everything; what depends on something that failed is not tried. Then the process ends.
  void Do(const std::string& path) {
    client_.emplace();
    if (Succeeds(client_->Open(path))) DoAll();
    client_.reset();
  }

  bool MayHaveLeft(const Cases& cases) const { return possible_.count(cases) != 0; }

 private:
  void DoAll() {
    Insert(11);
    Rekey(1, 12);
    Delete(2);
    const auto before = possible_;
    if (Succeeds(client_->Call(kBeginTransaction))) {
      Insert(13);
      Rekey(3, 14);
      if (!Succeeds(client_->Call(kEndTransaction))) {
        possible_.insert(before.begin(), before.end());
      }
    }
    Insert(15);
    Succeeds(client_->Call(kClose));
  }

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
    Note(client_->Insert(caseId), [=](Cases& cases) { cases.insert(caseId); });
  }

  void Rekey(int from, int to) {
    if (Succeeds(client_->Find(from))) {
      client_->record.caseId = to;
      Note(client_->Call(kUpdate, kByCase), [=](Cases& cases) {
        cases.erase(from);
        cases.insert(to);
      });
    }
  }

  void Delete(int caseId) {
    if (Succeeds(client_->Find(caseId))) {
      Note(client_->Call(kDelete, kByCase), [=](Cases& cases) { cases.erase(caseId); });
    }
  }

  std::optional<Client> client_;
  std::set<Cases> possible_{{1, 2, 3}};
};

class Faults : public testing::TestWithParam<std::tuple<Fault, const char*>> {
 protected:
  using Connection = recordmanager::Connection;

  Faults() {
    Client client;
    EXPECT_EQ(client.Create(sound), kSuccess);
    EXPECT_EQ(client.Open(sound), kSuccess);
    for (const int caseId : {1, 2, 3}) EXPECT_EQ(client.Insert(caseId), kSuccess);
    EXPECT_EQ(client.Call(kClose), kSuccess);
  }

  std::string InFolder(const char* name) const { return (folder_.Path() / name).string(); }

  // What the database itself says.
  static void ExpectAnswer(const std::string& file, const char* question, const char* answer) {
    Connection connection;
    std::string said;
    EXPECT_EQ(connection.Open(file, Connection::Way::kExisting), kSuccess);
    EXPECT_EQ(connection.QueryText(question, said), kSuccess);
    EXPECT_EQ(said, answer) << question;
  }

  // The next process finds all that was done, by every key, and works at once.
  static void ExpectSound(const std::string& file, const Work& work) {
    {
      Client client;
      ASSERT_EQ(client.Open(file), kSuccess);
      for (const int key : {kByNumber, kByCase}) {
        Cases cases;
        for (WORD step = kGetFirst; client.Call(step, key) == kSuccess; step = kGetNext) {
          cases.insert(client.record.caseId);
        }
        EXPECT_TRUE(work.MayHaveLeft(cases)) << testing::PrintToString(cases) << " by key " << key;
      }
      EXPECT_EQ(client.Insert(16), kSuccess);
    }
    ExpectAnswer(file, "PRAGMA integrity_check", "ok");
  }

  qlx99::tests::TemporaryFolder folder_;
  FaultyFiles files;
  std::string sound = InFolder("SOUND.KRV");
};

TEST_P(Faults, LoseNothingAndDamageNothing) {
  const auto& [fault, journal] = GetParam();
  ExpectAnswer(sound, (std::string("PRAGMA journal_mode = ") + journal).c_str(), journal);
  const std::string file = InFolder("FAULTY.KRV");
  int n = 0;
  for (bool struck = true; struck && !HasFailure();) {
    SCOPED_TRACE("request " + std::to_string(++n));
    std::filesystem::remove(file);
    std::filesystem::copy_file(sound, file);
    files.Fail(fault, n, fault != Fault::kIoError || n % 2 == 0);
    Work work;
    work.Do(file);
    struck = files.Heal();
    ExpectSound(file, work);
  }
  EXPECT_GT(n, 2) << "no fault has struck";
}

INSTANTIATE_TEST_SUITE_P(OfTheDisk, Faults,
                         testing::Combine(testing::Values(Fault::kFull, Fault::kIoError,
                                                          Fault::kCannotOpen),
                                          testing::Values("wal", "delete")));

}  // namespace
}  // namespace recordmanager_tests
