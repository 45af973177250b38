// `qlx office copy`: what it copies, whatever happens meanwhile, and what is left when it fails.
#include <gmock/gmock.h>

#include <algorithm>
#include <set>

#include "btrieve/file_description.h"
#include "office/command_line.h"
#include "office/record_manager.h"
#include "record_files.h"
#include "recordmanager/party_file.h"
#include "sample_office.h"
#include "support/manager_script.h"
#include "testkit/files.h"

namespace {

namespace fs = std::filesystem;

using namespace qlx99::tests;
using office::TableFile;
using testing::ElementsAre;
using testing::HasSubstr;

class QlxCopies : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(Qlx("office|create|" + Office().string()).code, office::kDone);
    ASSERT_EQ(Qlx("setup|" + Office().string()).code, office::kDone);
  }

  fs::path Office() const { return folder_.Path() / "office"; }
  fs::path Target() const { return folder_.Path() / "copy"; }
  std::string CopyCommand() const { return "office|copy|" + Target().string(); }

  static std::set<std::string> NamesIn(const fs::path& folder) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) {
      names.insert(entry.path().filename().string());
    }
    return names;
  }

  static std::vector<std::string> RecordsOf(const fs::path& file, int key) {
    const office::RecordManager manager;
    TableFile table(manager, file, btrieve::kOpenReadOnly);
    std::vector<std::string> records;
    for (auto record = table.First(key); record; record = table.Next(key)) {
      records.push_back(*record);
    }
    return records;
  }

  // A file that only the case-management system knows, with several orders of its own.
  // `lastKey` and `firstKey` have the flags of the last and the first of them. The last one lies
  // over a part of the middle one when it begins before byte 8.
  void MakeForeignFile(const char* name, unsigned lastKey, unsigned firstKey = 0,
                       std::size_t lastBegin = 8) const {
    const auto key = [](std::size_t offset, unsigned flags) {
      return btrieve::DescribeKey(offset, 4, btrieve::kIntegerKey, flags);
    };
    const std::string path = (Office() / name).string();
    const std::string description =
        btrieve::DescribeFile(50, {key(0, firstKey), key(4, kRepeated), key(lastBegin, lastKey)});
    ASSERT_EQ(recordmanager_tests::Create(path, description), btrieve::kSuccess);
    recordmanager_tests::Client file;
    ASSERT_EQ(file.Open(path), btrieve::kSuccess);
    const auto text = [](int number) { return std::to_string(number); };
    std::string script = "begin";
    for (int id = 1'200; id > 0; --id) {
      script += ", insert number=" + text(id) + " case=" + text(id % 7) + " role=" + text(id % 3) +
                " counter=" + text(id);
    }
    for (int id = 1; id < 900; id += 11) {
      script += ", equal number=" + text(id) + ", update case=-1, update case=" + text(id % 7);
    }
    EXPECT_EQ(file.Do(script + ", end, close").find('!'), std::string::npos);
    testkit::ReleaseEmbedded();
  }

  static constexpr unsigned kRepeated = btrieve::kKeyDuplicates | btrieve::kKeyModifiable;
  PrivateRegistry registry_;
  TemporaryFolder folder_;
};

TEST_F(QlxCopies, HoldEveryByteAndEveryOrder) {
  MakeForeignFile("ZTANDERE.krv", kRepeated);
  MakeForeignFile("ZTFEST.KRV", btrieve::kKeyDuplicates);
  MakeForeignFile("ZTTEILS.KRV", kRepeated, 0, 6);
  const std::string library =
      (testkit::ProductFolder() / testkit::LibraryFile("atbtrv32")).string();
  const Outcome copied = Qlx(CopyCommand() + "|--to|" + library);
  ASSERT_EQ(copied.code, office::kDone) << copied.err;
  EXPECT_THAT(copied.err, HasSubstr(" records compared\n"));
  const auto names = NamesIn(Target());

  std::vector<std::pair<std::string, int>> orders;
  std::set<std::string> expected = {"ZTANDERE.krv", "ZTFEST.KRV", "ZTTEILS.KRV"};
  for (const std::string& name : expected) {
    for (int key = 0; key < 3; ++key) orders.emplace_back(name, key);
  }
  for (const qlx99::RecordLayout& layout : qlx99::kRecordFiles) {
    expected.insert(layout.file.name);
    for (const qlx99::Key& key : layout.keys) orders.emplace_back(layout.file.name, key.number);
  }
  EXPECT_EQ(names, expected);
  for (const auto& [name, key] : orders) {
    EXPECT_EQ(RecordsOf(Target() / name, key), RecordsOf(Office() / name, key)) << name << key;
  }
  EXPECT_THAT(Qlx(CopyCommand()).err, HasSubstr("Nothing was copied"));
  testkit::WriteAll(folder_.Path() / "file", "");
  MakeForeignFile("ZTFEST.KRV", btrieve::kKeyDuplicates, btrieve::kKeyDuplicates);
  EXPECT_THAT(Qlx("office|copy|" + (folder_.Path() / "again").string()).err,
              HasSubstr("ZTFEST.KRV cannot be copied: several of its keys "));
  EXPECT_THAT(Qlx("office|copy|" + (folder_.Path() / "none" / "again").string()).err,
              HasSubstr("again cannot be made: "));
  for (const char* target : {"file", "qlx-copy"}) {
    EXPECT_THAT(Qlx("office|copy|" + (folder_.Path() / target).string()).err,
                HasSubstr(std::string(target) + " cannot be the folder. Nothing was copied"));
  }
}

// Where names are the same in small letters, a file of such a name is no other one.
TEST_F(QlxCopies, MayBeCopiedWhateverTheLettersOfTheirNames) {
  ASSERT_EQ(Qlx(CopyCommand()).code, office::kDone);
  if (fs::exists(Target() / "ztuser.krv")) {
    fs::rename(Target() / "ZTUSER.KRV", Target() / "users");  // as it is the same name
    fs::rename(Target() / "users", Target() / "ztuser.krv");
  }
  ASSERT_EQ(Qlx("setup|--force|" + Target().string()).code, office::kDone);
  EXPECT_THAT(Qlx("office|copy|" + (folder_.Path() / "again").string()).out,
              HasSubstr(std::to_string(qlx99::kRecordFiles.size()) + " record files"));
}

TEST_F(QlxCopies, AreOfOneMomentAlsoWhileTheOfficeWorks) {
  FoundManagers managers;
  ManagerScript manager(managers);
  const auto insert = [this](const char* name, std::string record) {
    btrieve::Client client(testkit::EmbeddedEntryPoint());
    btrieve::Must(client.Open((Office() / name).string()));
    btrieve::Must(client.Call(btrieve::kInsert, 0, record));
    btrieve::Must(client.Close());
  };
  const std::string user(qlx99::UserRecord::file.length, '\0');  // the first by its number
  const std::string bank(qlx99::BankConnectionRecord::file.length, '\0');
  manager.Meanwhile(btrieve::kGetNext, "ZTUSER.KRV", [&] { insert("ZTUSER.KRV", user); });
  manager.Meanwhile(btrieve::kGetNext, "ZTDOLIST.KRV", [&] {
    insert("ZTBANK.KRV", bank);
    EXPECT_THAT(Qlx(CopyCommand()).err, HasSubstr("Something is being copied in "));
  });
  const Outcome copied = Qlx(CopyCommand());
  ASSERT_EQ(copied.code, office::kDone) << copied.err;
  EXPECT_EQ(RecordsOf(Target() / "ZTUSER.KRV", 0).front(), user);
  EXPECT_EQ(RecordsOf(Target() / "ZTBANK.KRV", 0).front(), bank);
  UnloadRecordManager("w3btrv7.dll");
}

// As the next copy finds what a killed one has left.
TEST_F(QlxCopies, TakeAwayWhatAKilledOneHasLeftAndNothingElse) {
  const fs::path left = folder_.Path() / "qlx-copy";
  fs::create_directories(left / "files");
  testkit::WriteAll(left / "files" / "ZTUSER.KRV", "half");
  EXPECT_THAT(Qlx(CopyCommand()).err, HasSubstr("is no copy that was interrupted"));
  EXPECT_THAT(NamesIn(left / "files"), ElementsAre("ZTUSER.KRV"));
  testkit::WriteAll(left / "lock", "");
  const Outcome copied = Qlx(CopyCommand());
  ASSERT_EQ(copied.code, office::kDone) << copied.err;
  EXPECT_THAT(NamesIn(folder_.Path()), ElementsAre("copy", "office"));
}

TEST_F(QlxCopies, AreThereWithAllFilesOrNotAtAll) {
  const struct {
    const char* target;
    WORD operation;
    const char* file;
    int status;
    const char* words;
  } rows[] = {
      {"copy", btrieve::kCreate, "ZTHEAD.KRV", btrieve::kInvalidFileName, "is not usable"},
      {"copy", btrieve::kInsert, "ZTBANK.KRV", btrieve::kSuccess, "does not keep what it is given"},
      {"there", btrieve::kInsert, "ZTPART.KRV", btrieve::kDiskFull, "the disk is full"},
  };
  FoundManagers managers;
  ManagerScript manager(managers);
  const fs::path folder = folder_.Path() / "there";
  fs::create_directory(folder);
  testkit::WriteAll(folder / "notes", "");
  for (const auto& [target, operation, file, status, words] : rows) {
    SCOPED_TRACE(words);
    manager.Forget();
    manager.Answers(operation, file, status);
    const Outcome copied = Qlx("office|copy|" + (folder_.Path() / target).string());
    EXPECT_EQ(copied.code, office::kFailed);
    EXPECT_THAT(copied.err, HasSubstr(words));
    EXPECT_THAT(NamesIn(folder_.Path()), ElementsAre("office", "there"));
    EXPECT_THAT(NamesIn(folder), ElementsAre("notes"));
  }
  manager.Forget();
  // A record manager that knows no transactions is no fault.
  manager.Answers(btrieve::kBeginTransaction, "", btrieve::kInvalidOperation);
  ASSERT_EQ(Qlx("office|copy|" + folder.string()).code, office::kDone);
  EXPECT_EQ(NamesIn(folder).size(), qlx99::kRecordFiles.size() + 1);
  EXPECT_EQ(Qlx("office|create|" + Target().string()).code, office::kDone);
  UnloadRecordManager("w3btrv7.dll");
}

}  // namespace
