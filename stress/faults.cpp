#include <optional>
#include <ostream>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>

#include "office/file_description.h"
#include "stress/hooked_files.h"
#include "stress/soundness.h"
#include "stress/trials.h"
#include "testkit/engine_entry_point.h"
#include "testkit/party.h"

namespace stress {
namespace {

using namespace btrieve;
using testkit::PartyRecord;

constexpr int kByNumber = PartyRecord::byNumber.number;
constexpr int kByCase = PartyRecord::byCase.number;

// A process with one file.
class Client : public btrieve::Client {
 public:
  Client() : btrieve::Client(testkit::EntryPointOf(engine_)) {}

  int Call(WORD operation, int keyNumber = kByNumber) {
    return btrieve::Client::Call(operation, keyNumber, record);
  }

  int Insert(int caseId) {
    record = {0, caseId};
    return Call(kInsert);
  }

  int Find(int caseId) {
    SetKey(caseId);
    return Call(kGetEqual, kByCase);
  }

  testkit::Party record;

 private:
  recordmanager::Engine engine_;
};

// What is in a file: the cases of its records.
using Cases = std::multiset<int>;

// Walks along a key. Returns the status that ends the walk.
int ReadAll(Client& client, int key, Cases& cases) {
  int status = client.Call(kGetFirst, key);
  for (; status == kSuccess; status = client.Call(kGetNext, key)) {
    cases.insert(client.record.caseId);
  }
  return status;
}

// A process that works on a file with records of the cases 1 to 3, and what may be there then.
class Work {
 public:
  // One of everything; what depends on something that failed is not tried. Then the process ends.
  explicit Work(const std::string& path) {
    client_.emplace();
    if (Succeeds(client_->Open(path))) DoAll();
    client_.reset();
  }

  bool MayHaveLeft(const Cases& cases) const { return possible_.contains(cases); }

 private:
  void DoAll() {
    Insert(11);
    Rekey(1, 12);
    Delete(2);
    Walk();
    const auto before = possible_;
    if (Succeeds(client_->Call(kBeginTransaction))) {
      Insert(13);
      Rekey(3, 14);
      if (!Succeeds(client_->Call(kEndTransaction))) possible_.insert(before.begin(), before.end());
    }
    Insert(15);
    Walk();
    Succeeds(client_->Call(kClose));
  }

  // Finds all, or says that it cannot.
  void Walk() {
    Cases cases;
    const int status = ReadAll(*client_, kByCase, cases);
    if (status == kEndOfFile && !possible_.contains(cases)) {
      throw std::runtime_error("a walk beside faults finds other records");
    }
    if (status != kEndOfFile) Succeeds(status);
  }

  // The published ways of saying that a disk cannot be used.
  static bool Succeeds(int status) {
    if (status == kSuccess) return true;
    if (status == kIoError || status == kDiskFull || status == kPermissionError) return false;
    throw std::runtime_error("a fault of the disk is called " + std::to_string(status));
  }

  // What succeeds is done; what fails is done wholly, when the disk failed late, or not at all.
  template <class Change>
  void Note(int status, const Change& change) {
    const auto before = possible_;
    if (Succeeds(status)) possible_.clear();
    for (Cases cases : before) {
      change(cases);
      possible_.insert(cases);
    }
  }

  void Insert(int caseId) {
    Note(client_->Insert(caseId), [=](Cases& cases) { cases.insert(caseId); });
  }

  void Rekey(int from, int to) {
    if (!Succeeds(client_->Find(from))) return;
    client_->record.caseId = to;
    Note(client_->Call(kUpdate, kByCase), [=](Cases& cases) {
      cases.erase(from);
      cases.insert(to);
    });
  }

  void Delete(int caseId) {
    if (!Succeeds(client_->Find(caseId))) return;
    Note(client_->Call(kDelete, kByCase), [=](Cases& cases) { cases.erase(caseId); });
  }

  std::optional<Client> client_;
  std::set<Cases> possible_{{1, 2, 3}};
};

void MakeFile(const std::string& path) {
  Client client;
  Must(client.Create(path, office::DescribeFile(qlx99::LayoutOf<PartyRecord>())));
  Must(client.Open(path));
  for (const int caseId : {1, 2, 3}) client.Insert(caseId);
  client.Call(kClose);
}

// The next process finds all that was done, by every key, and works at once.
void ExpectSound(const std::string& path, const Work& work) {
  {
    Client client;
    if (client.Open(path) != kSuccess) throw std::runtime_error("the file cannot be opened");
    for (const int key : {kByNumber, kByCase}) {
      Cases cases;
      if (ReadAll(client, key, cases) != kEndOfFile || !work.MayHaveLeft(cases)) {
        throw std::runtime_error("by key " + std::to_string(key) + " other records are found");
      }
    }
    if (client.Insert(16) != kSuccess) throw std::runtime_error("the file cannot be written");
  }
  const std::string damage = DamageOf(path);
  if (!damage.empty()) throw std::runtime_error(damage);
}

// Which requests may fail, and with what.
enum class DiskFault {
  kFull,     // writing: the disk is full
  kIoError,  // anything but opening: an input/output error
  kCannotOpen
};

// How the request fails; SQLITE_OK: not at all.
int FailureOf(Request::Kind kind, DiskFault fault) {
  struct Failure {
    int ioError;
    int full = SQLITE_OK;
  };
  constexpr Failure kFailures[] = {{SQLITE_OK},
                                   {SQLITE_IOERR_DELETE},
                                   {SQLITE_IOERR_ACCESS},
                                   {SQLITE_IOERR_READ},
                                   {SQLITE_IOERR_WRITE, SQLITE_FULL},
                                   {SQLITE_IOERR_TRUNCATE},
                                   {SQLITE_IOERR_FSYNC},
                                   {SQLITE_IOERR_FSTAT},
                                   {SQLITE_IOERR_LOCK},
                                   {SQLITE_IOERR_CHECKRESERVEDLOCK},
                                   {SQLITE_IOERR_SHMMAP, SQLITE_IOERR_SHMSIZE},
                                   {SQLITE_IOERR_SHMLOCK}};
  if (fault == DiskFault::kCannotOpen) return kind == Request::kOpen ? SQLITE_CANTOPEN : SQLITE_OK;
  return fault == DiskFault::kFull ? kFailures[kind].full : kFailures[kind].ioError;
}

// A file system that fails on command.
class FaultyFiles : public HookedFiles {
 public:
  // The nth request from now on that may fail so, counted from 1, fails; if `lasting`, all behind
  // it do too.
  void Fail(DiskFault fault, int nth, bool lasting) {
    fault_ = fault;
    left_ = nth;
    lasting_ = lasting;
  }

  // All is well again. False when nothing has failed since Fail.
  bool Heal() {
    left_ = 0;
    return std::exchange(failed_, false);
  }

  int Answer(const Request& request) override {
    const int failure = FailureOf(request.kind, fault_);
    if (failure == SQLITE_OK || left_ == 0 || --left_ > 0) return SQLITE_OK;
    left_ = lasting_ ? 1 : 0;
    failed_ = true;
    return failure;
  }

 private:
  DiskFault fault_ = DiskFault::kFull;
  int left_ = 0;  // requests until the one that fails; 0: none does
  bool lasting_ = false;
  bool failed_ = false;
};

struct FaultTrial {
  const char* name;
  DiskFault fault;
  bool lasting;
  bool rollbackJournal;
};

// Lets every request fail in turn; returns how many there were.
int TryAll(const FaultTrial& trial, const std::filesystem::path& folder) {
  const std::string sound = (folder / "SOUND.KRV").string();
  const std::string path = (folder / "FAULTY.KRV").string();
  MakeFile(sound);
  if (trial.rollbackJournal) UseRollbackJournal(sound);
  FaultyFiles files;
  for (int n = 1;; ++n) {
    std::filesystem::remove(path);
    std::filesystem::copy_file(sound, path);
    files.Fail(trial.fault, n, trial.lasting);
    const Work work(path);
    const bool struck = files.Heal();
    try {
      ExpectSound(path, work);
    } catch (const std::exception& found) {
      throw std::runtime_error(std::string(trial.name) + " at request " + std::to_string(n) + ": " +
                               found.what());
    }
    if (!struck) return n - 1;
  }
}

}  // namespace

bool RunFaults(const std::filesystem::path& folder, std::ostream& report) {
  constexpr FaultTrial kFaults[] = {
      {"the disk is full", DiskFault::kFull, true, false},
      {"the disk is full for a moment", DiskFault::kFull, false, false},
      {"an input/output error", DiskFault::kIoError, false, false},
      {"input/output errors from then on", DiskFault::kIoError, true, false},
      {"a file cannot be opened", DiskFault::kCannotOpen, true, false},
  };
  std::filesystem::create_directories(folder);
  bool sound = true;
  for (FaultTrial trial : kFaults) {
    try {
      int faults = TryAll(trial, folder);
      trial.rollbackJournal = true;
      faults += TryAll(trial, folder);
      report << faults << " times " << trial.name << ": nothing lost, nothing damaged" << std::endl;
    } catch (const std::exception& found) {
      report << "FOUND: " << found.what() << std::endl;
      sound = false;
    }
  }
  if (sound) std::filesystem::remove_all(folder);
  return sound;
}

}  // namespace stress
