// A file that was put back beside what a killed program has left, its log or its journal.
#include "party_file.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;

class Restored : public PartyFile {
 protected:
  static constexpr const char* kAll =
      "first, next*, last, previous*, first case, next* case, close";

  // A file of these bytes after a script, with everybody's log moved in.
  std::string After(const std::string& bytes, const std::string& script) {
    const std::string name = FreshName();
    WriteAll(name, bytes);
    EXPECT_EQ(Opened(name).Do(script + ", close").find('!'), std::string::npos);
    return ReadAll(name);
  }

  // What a program that takes this script leaves beside the file when it is killed in the midst.
  std::string Leftover(const std::string& name, const std::string& script,
                       const std::string& suffix) const {
    Worker worker(name, script + ", hold");
    std::string left = ReadAll(name + suffix);
    worker.Kill();
    return left;
  }

  // What is read, or why not, from a file of these bytes with that beside it; a refusal changes
  // neither.
  std::string Read(const std::string& bytes, const std::string& suffix, const std::string& left,
                   const std::string& journal = "") {
    const std::string name = FreshName();
    if (!journal.empty()) WriteAll(name + "-journal", journal);
    WriteAll(name, bytes);
    WriteAll(name + suffix, left);
    WriteAll(name + "-shm", std::string(32768, 'x'));
    Client reader;
    if (const int status = reader.Open(name); status != kSuccess) {
      EXPECT_TRUE(ReadAll(name) == bytes && ReadAll(name + suffix) == left);
      return '!' + std::to_string(status);
    }
    return reader.Do(kAll);
  }

  // The same beside a file of these bytes.
  std::string LeftoverOf(const std::string& bytes, const std::string& script) {
    const std::string name = FreshName();
    WriteAll(name, bytes);
    return Leftover(name, script, "-wal");
  }

  std::string WithRollbackJournal(std::string bytes) const {
    bytes = InMode(kJournalled, std::move(bytes));
    WriteAll(path, bytes);
    return bytes;
  }

 private:
  std::string FreshName() { return InFolder("COPY" + std::to_string(++copies_) + ".KRV"); }

  int copies_ = 0;
};

const std::string kNone = "!9 !9 !9 !9 !9 !9 ok";
const std::string kOne = "1 !9 1 !9 1 !9 ok";
const std::string kTwo = "1 2 !9 2 1 !9 1 2 !9 ok";
const std::string kThree = "1 2 3 !9 3 2 1 !9 1 2 3 !9 ok";
const std::string kRefused = "!14";

TEST_F(Restored, BesideALogAreWholeOrRefused) {
  const std::string fresh = ReadAll(path);
  const std::string earlier = After(fresh, "insert");
  EXPECT_EQ(client.Do("insert, insert, close"), "1 2 ok");
  const std::string base = ReadAll(path);
  const std::string log = Leftover(path, "insert case=9, insert, equal number=4, delete", "-wal");
  const std::string killed = ReadAll(path);
  const std::string folded = After(base, "insert case=9");

  EXPECT_EQ(Read(base, "-wal", log), kThree);
  EXPECT_EQ(Read(killed, "-wal", log), kThree);
  EXPECT_EQ(Read(earlier, "-wal", log), kRefused);
  EXPECT_EQ(Read(folded, "-wal", log), kRefused) << "the same changes, made by another";
  EXPECT_EQ(Read(After(base, "equal number=2, delete"), "-wal", log), kRefused);
  for (const char* other : {"", "not a record file"}) EXPECT_EQ(Read(other, "-wal", log), kRefused);
  // A file that nobody has written since it was created can only lie beside a former file's log.
  EXPECT_EQ(Read(fresh, "-wal", log), kNone);
  const std::string formers = "\xD9\xD5\x05\xF9\x20\xA1\x63\xD7" + std::string(9000, 'x');
  EXPECT_EQ(Read(fresh, "-wal", LeftoverOf(fresh, "insert"), formers), kOne) << "its own log";
  // What SQLite would not play in does no harm.
  EXPECT_EQ(Read(earlier, "-wal", log.substr(0, 4000)), kOne);
}

TEST_F(Restored, BesideAJournalAreWholeOrRefused) {
  const std::string fresh =
      WithRollbackJournal(After(ReadAll(path), "insert, equal number=1, delete"));
  const std::string base = After(fresh, "insert, insert");
  WriteAll(path, base);
  const std::string begun = Leftover(path, "begin, insert, insert", "-journal");
  const std::string journal = Synchronised(begun);

  EXPECT_EQ(Read(base, "-journal", journal), kTwo);
  EXPECT_EQ(Read(base, "-journal", begun), kTwo);
  EXPECT_EQ(Read(fresh, "-journal", begun), kNone);
  EXPECT_EQ(Read(fresh, "-journal", journal), kRefused);
  EXPECT_EQ(Read(After(base, "insert"), "-journal", journal), kRefused);
  EXPECT_EQ(Read("", "-journal", journal), kRefused);
}

// As by a copy that was interrupted. What lies beside has some pages of the lost end, not all.
TEST_F(Restored, AndCutOffAreNotGoneOnWith) {
  constexpr std::size_t kPage = 4096;
  std::string inserts = "begin";
  for (int i = 0; i < 400; ++i) inserts += ", insert";
  inserts += ", end";
  const std::string base = After(ReadAll(path), inserts);
  const std::string log = LeftoverOf(base, inserts);
  const std::string whole = Read(base, "-wal", log);
  ASSERT_TRUE(whole.starts_with("1 2 ")) << whole.substr(0, 20);
  // Killed when only the first page had been moved into the file, and tells of the others.
  EXPECT_EQ(Read(log.substr(56, kPage) + base.substr(kPage), "-wal", log), whole);

  EXPECT_EQ(Read(base.substr(0, 3 * kPage), "-wal", log), kRefused);
  const std::string unwritten = ReadAll(path);
  EXPECT_EQ(Read(unwritten.substr(0, 3 * kPage), "-wal", LeftoverOf(unwritten, "insert")), kOne)
      << "the log has all pages that are missing";
  const std::string journalled = WithRollbackJournal(base);
  const std::string journal = Synchronised(Leftover(path, "begin, insert", "-journal"));
  EXPECT_EQ(Read(journalled.substr(0, 3 * kPage), "-journal", journal), kRefused);
}

// A record file's bytes as the first format had them: without states.
std::string OfFirstFormat(std::string bytes) {
  constexpr std::size_t kFormat = 63;
  constexpr std::size_t kPage = 4096;
  bytes.at(kFormat) = 1;
  const std::string states = ", state BLOB NOT NULL, before BLOB NOT NULL)";
  bytes.replace(bytes.find(states), states.size(), ')' + std::string(states.size() - 1, ' '));
  // A row begins with its length, its number, and a head that tells its own length and what each
  // column is.
  const std::size_t last = bytes.rfind("\x1C\x1C", kPage + kPage - 1);
  std::size_t head = last;
  while (bytes.at(head) != static_cast<char>(last + 2 - head)) --head;
  bytes[head] = static_cast<char>(bytes[head] - 2);
  bytes[head - 2] = static_cast<char>(bytes[head - 2] - 18);
  return bytes.erase(last, 2).insert(kPage + kPage - 2, 2, '\0');
}

TEST_F(Restored, OfTheFirstFormatGoOnWithTheChangeToTheSecondOnly) {
  const std::string first = OfFirstFormat(After(ReadAll(path), "insert"));
  const std::string log = LeftoverOf(first, "insert");
  const std::string second = After(first, "insert");
  const std::string later = LeftoverOf(second, "insert");
  // Killed when only the first page had been moved into the file; it is the log's first, too.
  const std::string begun = log.substr(56, 4096) + first.substr(4096);

  WriteAll(path, first);
  EXPECT_EQ(Opened(path, kOpenReadOnly).Do("first, next, close"), "1 !9 ok");
  EXPECT_EQ(Read(first, "-wal", log), kTwo);
  EXPECT_EQ(Read(begun, "-wal", log), kTwo);
  EXPECT_EQ(Read(second, "-wal", later), kThree);
  EXPECT_EQ(Read(first, "-wal", later), kRefused);
}

}  // namespace
}  // namespace recordmanager_tests
