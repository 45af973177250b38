// What other programs can do to files on Windows only: keep everybody else from opening them.
#include <chrono>
#include <thread>

#include "party_file.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;
using namespace std::chrono_literals;
using std::chrono::steady_clock;

// A program that looks at a file, as a virus scanner or a backup does.
class Onlooker {
 public:
  Onlooker(const std::string& path, DWORD shared)
      : file_(CreateFileA(path.c_str(), GENERIC_READ, shared, nullptr, OPEN_EXISTING, 0, nullptr)) {
    EXPECT_NE(file_, INVALID_HANDLE_VALUE) << path;
  }
  Onlooker(const Onlooker&) = delete;
  Onlooker& operator=(const Onlooker&) = delete;
  ~Onlooker() {
    if (thread_.joinable()) thread_.join();
    GoAway();
  }

  void Lock() { EXPECT_TRUE(LockFile(file_, 0, 0, MAXDWORD, MAXLONG)); }
  void Map() {
    const HANDLE mapping = CreateFileMappingA(file_, nullptr, PAGE_READONLY, 0, 0, nullptr);
    view_ = MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0);
    EXPECT_NE(view_, nullptr);
    CloseHandle(mapping);
  }
  void GoAway() {
    if (view_ != nullptr) UnmapViewOfFile(std::exchange(view_, nullptr));
    if (file_ != INVALID_HANDLE_VALUE) CloseHandle(std::exchange(file_, INVALID_HANDLE_VALUE));
  }
  void GoAwayAfter(std::chrono::milliseconds time) {
    thread_ = std::thread([this, time] {
      std::this_thread::sleep_for(time);
      GoAway();
    });
  }

 private:
  HANDLE file_;
  void* view_ = nullptr;
  std::thread thread_;
};

class WindowsFiles : public PartyFile {
 protected:
  // Of many tries the first ones wait, and the others are answered at once: waiting again would
  // take as long.
  template <class Try>
  static void ExpectPatienceOnce(const Try& tryIt) {
    const auto start = steady_clock::now();
    for (int i = 0; i < 2; ++i) EXPECT_EQ(tryIt(i), kFileInUse);
    const auto patience = steady_clock::now() - start;
    EXPECT_GT(patience, 2s);
    for (int i = 0; i < 2000; ++i) ASSERT_EQ(tryIt(i), kFileInUse);
    EXPECT_LT(steady_clock::now() - start, 3 * patience);
  }

  // Wine makes no links and removes none, but follows those of its host.
  bool RunOnHostOfWine(std::string command) const {
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION ignored{};
    return CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                          folder.string().c_str(), &startup, &ignored) != 0;
  }
  static void WaitForFile(const std::string& name, bool isThere) {
    for (int i = 0; i < 500 && std::filesystem::exists(name) != isThere; ++i) Sleep(10);
    ASSERT_EQ(std::filesystem::exists(name), isThere);
  }

  std::string WithRollbackJournal() const { return InMode(kJournalled, ReadAll(path)); }

  WindowsFiles() { EXPECT_EQ(client.Do("insert, close"), "1 ok"); }
};

TEST_F(WindowsFiles, AreWaitedForWhileSomebodyLooksAtThem) {
  const struct {
    const char* suffix;
    DWORD shared;
    std::chrono::milliseconds time;
  } rows[] = {{"", FILE_SHARE_READ | FILE_SHARE_WRITE, 300ms},
              {"", FILE_SHARE_READ, 50ms},
              {"", FILE_SHARE_READ, 1500ms},
              {"", 0, 1500ms},
              {"-wal", FILE_SHARE_READ, 300ms},
              {"-wal", 0, 300ms},
              {"-shm", FILE_SHARE_READ, 300ms},
              {"-shm", 0, 300ms},
              {"-journal", FILE_SHARE_READ, 300ms},
              {"-journal", 0, 300ms}};
  int i = 0;
  for (const auto& [suffix, shared, time] : rows) {
    const std::string name = InFolder(std::to_string(++i) + ".KRV");
    const bool hasJournal = suffix == std::string("-journal");
    WriteAll(name, hasJournal ? WithRollbackJournal() : ReadAll(path));
    if (*suffix != '\0') WriteAll(name + suffix, "");
    Onlooker onlooker(name + suffix, shared);
    if ((shared & FILE_SHARE_WRITE) != 0) onlooker.Lock();  // as a backup may
    onlooker.GoAwayAfter(time);
    Client one;
    EXPECT_EQ(one.Open(name), kSuccess) << suffix << ' ' << shared;
    EXPECT_EQ(one.Do("insert, first, next, close"), "2 1 2 ok") << suffix << ' ' << shared;
  }
}

TEST_F(WindowsFiles, AreReplacedWhenNobodyLooksAtThemAnyMore) {
  const std::string name = InFolder("OLD.KRV");
  for (const DWORD more : {0, FILE_SHARE_DELETE}) {
    WriteAll(name, "old");
    Onlooker onlooker(name, FILE_SHARE_READ | FILE_SHARE_WRITE | more);
    onlooker.GoAwayAfter(300ms);
    EXPECT_EQ(Create(name), kSuccess) << more;
  }
}

TEST_F(WindowsFiles, AreInUseWhileSomebodyDeniesThemForLong) {
  const std::string names[] = {InFolder("ONE.KRV"), InFolder("TWO.KRV")};
  for (const std::string& name : names) WriteAll(name, ReadAll(path));
  for (const DWORD shared : {DWORD{FILE_SHARE_READ}, DWORD{0}}) {
    std::deque<Onlooker> onlookers;
    for (const std::string& name : names) onlookers.emplace_back(name, shared);
    // In turns, as threads do, each with a file of its own.
    ExpectPatienceOnce([&](int i) { return Client().Open(names[i % 2]); });
    EXPECT_EQ(Create(names[0]), kFileInUse);
    onlookers.clear();
    std::this_thread::sleep_for(60ms);  // earlier, nobody looks whether it has gone
    EXPECT_EQ(Opened(names[0]).Do("first, update, close"), "1 ok ok") << "what failed is not kept";
    std::this_thread::sleep_for(2100ms);
    EXPECT_EQ(client.Open(InFolder("NONE.KRV")), kFileNotFound);  // lets go of the file
  }
}

TEST_F(WindowsFiles, AreInUseWhileSomebodyLocksTheMemoryOfTheirLog) {
  const std::string name = InFolder("LOCKED.KRV");
  WriteAll(name, ReadAll(path));
  WriteAll(name + "-shm", "");
  Onlooker onlooker(name + "-shm", FILE_SHARE_READ | FILE_SHARE_WRITE);
  onlooker.Lock();
  ExpectPatienceOnce([&](int) { return Client().Open(name); });
  onlooker.GoAway();
  std::this_thread::sleep_for(60ms);  // earlier, nobody looks whether it has gone
  EXPECT_EQ(Opened(name).Do("first"), "1");
}

// As virus scanners do. Windows truncates no file that is mapped, and SQLite takes that for done.
TEST_F(WindowsFiles, KeepWhatWasWrittenWhileSomebodyHadTheirJournalMapped) {
  const std::string name = InFolder("MAPPED.KRV");
  WriteAll(name, WithRollbackJournal());
  Client& writer = Opened(name);
  EXPECT_EQ(writer.Do("begin, insert"), "ok 2");
  Onlooker onlooker(name + "-journal", FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
  onlooker.Map();
  EXPECT_EQ(writer.Do("end, insert"), "ok 3");
  EXPECT_EQ(Worker(name, "insert").Wait(), 0);
  EXPECT_EQ(writer.Do("first, next*"), "1 2 3 4 !9");
}

// As whoever writes the file now and then does.
TEST_F(WindowsFiles, RecoverFromAJournalThatSomebodyHasOpen) {
  const std::string base = WithRollbackJournal();
  const std::string name = InFolder("BEGUN.KRV");
  WriteAll(name, base);
  Client& killed = Opened(name);
  EXPECT_EQ(killed.Do("begin, insert"), "ok 2");
  const std::string journal = Synchronised(ReadAll(name + "-journal"));
  EXPECT_EQ(killed.Do("abort"), "ok");
  for (const bool isMapped : {false, true}) {
    const std::string copy = InFolder(isMapped ? "MAPPED.KRV" : "OPEN.KRV");
    WriteAll(copy, base);
    WriteAll(copy + "-journal", journal);
    Onlooker other(copy + "-journal", FILE_SHARE_READ | FILE_SHARE_WRITE);
    if (isMapped) other.Map();
    EXPECT_EQ(Client(Opened(copy)).Do("first, next, insert, close"), "1 !9 2 ok") << isMapped;
    EXPECT_EQ(Worker(copy, "insert").Wait(), 0);
  }
}

// Whatever links or notations lead there: the log lies beside the file itself.
TEST_F(WindowsFiles, AreTheSameByEveryPath) {
  const std::string file = InFolder("Beteiligte der Akten.KRV");
  const std::string link = InFolder("LINK.KRV");
  ASSERT_EQ(Create(file), kSuccess);
  std::array<char, MAX_PATH> shortName{};
  GetShortPathNameA(file.c_str(), shortName.data(), shortName.size());
  if (!CreateSymbolicLinkA(link.c_str(), file.c_str(), 0) || !std::filesystem::exists(link)) {
    RunOnHostOfWine("/bin/ln -s \"Beteiligte der Akten.KRV\" LINK.KRV");
  }
  WaitForFile(link, true);
  for (const std::string& other :
       {shortName.data() + std::string(), link, R"(\\?\)" + file, R"(\\.\)" + file}) {
    ASSERT_EQ(Create(file), kSuccess) << other;
    Worker writer(file, "insert, hold, insert");
    EXPECT_EQ(Opened(other).Do("first, insert, close"), "1 2 ok") << other;
    writer.GoOn();
    EXPECT_EQ(writer.Wait(), 0);
    EXPECT_EQ(Opened(other).Do("first, next*, close"), "1 2 3 !9 ok") << other;
  }
  EXPECT_EQ(Create(R"(\\?\)" + file), kSuccess);
  Client& one = Opened(file);
  EXPECT_EQ(one.Do("first, begin, insert"), "!9 ok 1");
  EXPECT_EQ(Opened(R"(\\?\)" + file).Do("insert, close"), "2 ok")
      << "not a second database that waits for the first";
  EXPECT_EQ(one.Do("end, first, next*, close"), "ok 1 2 !9 ok");
  if (RunOnHostOfWine("/bin/rm LINK.KRV")) WaitForFile(link, false);
}

TEST_F(WindowsFiles, AreNotCreatedUnderNamesThatWindowsForbids) {
  for (const char* name : {"a<b.KRV", "a|b.KRV", "a?.KRV"}) {
    EXPECT_EQ(Create(InFolder(name)), kInvalidFileName) << name;
    EXPECT_EQ(Client().Open(InFolder(name)), kFileNotFound) << name;
  }
}

}  // namespace
}  // namespace recordmanager_tests
