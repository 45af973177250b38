// Create, Stat, Open and Close: the published buffers, names, files that are no record files, and
// what becomes of files that are there already.
#include <chrono>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <thread>

#include "host.h"
#include "party_file.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;

class Files : public PartyFile {
 protected:
  const std::string other = InFolder("OTHER.KRV");

  static std::string ReadAll(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  static void WriteAll(const std::string& name, const std::string& bytes) {
    std::ofstream(name, std::ios::binary) << bytes;
  }

  // The party file's bytes with one of them changed.
  std::string WithByte(std::size_t offset, char value) const {
    std::string bytes = ReadAll(path);
    bytes.at(offset) = value;
    return bytes;
  }
};

TEST_F(Files, AreToldBackByStatWithTheCounts) {
  EXPECT_EQ(client.Do("insert case=4, insert case=4, insert case=5"), "1 2 3");
  std::vector<std::uint8_t> expected = DescribeParties();
  expected[offsetof(FileDescription, recordCount)] = 3;
  const std::uint8_t uniqueValues[] = {3, 2, 1, 1};
  for (std::uint8_t i = 0; i < 4; ++i) {
    std::uint8_t* key = &expected[sizeof(FileDescription) + i * sizeof(KeyDescription)];
    key[offsetof(KeyDescription, uniqueValues)] = uniqueValues[i];
    key[offsetof(KeyDescription, keyNumber)] = i;
  }
  for (const std::size_t room : {expected.size(), std::size_t{0x8000}, expected.size() - 1}) {
    std::vector<std::uint8_t> answer(room);
    auto length = static_cast<ULONG>(room);
    const int status = host::EntryPoint()(kStat, client.block.data(), answer.data(), &length,
                                          client.key.data(), kMaxKeyLength, 0);
    EXPECT_EQ(status, room < expected.size() ? kDataBufferLength : kSuccess);
    answer.resize(length);
    if (status == kSuccess) {
      EXPECT_EQ(answer, expected);
    }
  }
}

TEST_F(Files, AreNotCreatedFromDescriptionsThatCannotBeKept) {
  const auto string = [](std::size_t offset, std::size_t length, unsigned flags = 0) {
    return DescribeKey(offset, length, flags, kStringKey);
  };
  KeyDescription beforeFirst = string(0, 4);
  beforeFirst.position = 0;
  auto cut = DescribeParties();
  cut.pop_back();
  const struct {
    const char* what;
    std::vector<std::uint8_t> description;
    int status;
  } cases[] = {
      {"nothing", {}, kDataBufferLength},
      {"a key cut off", cut, kDataBufferLength},
      {"no length", DescribeFile(0, {string(0, 4)}), kInvalidRecordLength},
      {"variable length", DescribeFile(20, {string(0, 4)}, 1), kInvalidRecordLength},
      {"no keys", DescribeFile(20, {}), kInvalidKeyCount},
      {"too many keys", DescribeFile(20, std::vector(120, string(0, 4))), kInvalidKeyCount},
      {"key beyond the record", DescribeFile(20, {string(17, 4)}), kInvalidKeyPosition},
      {"key before the record", DescribeFile(20, {beforeFirst}), kInvalidKeyPosition},
      {"empty key", DescribeFile(20, {string(0, 0)}), kInvalidKeyLength},
      {"long key", DescribeFile(200, {string(0, 81)}), kInvalidKeyLength},
      {"odd integer", DescribeFile(20, {DescribeKey(0, 3, 0, kIntegerKey)}), kInvalidKeyLength},
      {"unknown type", DescribeFile(20, {DescribeKey(0, 4, 0, 5)}), kInvalidKeyType},
      {"segments", DescribeFile(20, {string(0, 4, 0x10), string(4, 4)}), kInvalidKeyFlags},
      {"key given twice", DescribeFile(20, {string(0, 4), string(4, 4)}, kKeyNumbersGiven),
       kInvalidKeyNumber},
  };
  for (const auto& [what, description, status] : cases) {
    EXPECT_EQ(Create(other, description), status) << what;
    EXPECT_FALSE(std::filesystem::exists(other)) << what;
  }
}

TEST_F(Files, MayHaveKeysUpToTheirLimits) {
  KeyDescription byNumber = DescribeKey(79, 1, kKeyDuplicates, kIntegerKey);
  byNumber.keyNumber = 7;
  KeyDescription byText = DescribeKey(0, 80, kKeyDuplicates, kStringKey);
  byText.keyNumber = 3;
  ASSERT_EQ(Create(other, DescribeFile(80, {byNumber, byText}, kKeyNumbersGiven)), kSuccess);
  Client& second = Opened(other);
  std::string record(80, '\xFF');
  const auto call = [&](WORD operation, char key) {
    ULONG length = 80;
    return host::EntryPoint()(operation, second.block.data(), record.data(), &length,
                              second.key.data(), kMaxKeyLength, key);
  };
  EXPECT_EQ(call(kInsert, 3), kSuccess);
  EXPECT_EQ(call(kInsert, 7), kSuccess);
  EXPECT_EQ(call(kGetFirst, 0), kInvalidKeyNumber);
  EXPECT_EQ(call(kGetLast, 3), kSuccess);
  EXPECT_EQ(call(kGetPrevious, 3), kSuccess);
  EXPECT_EQ(call(kGetPrevious, 3), kEndOfFile);
  EXPECT_EQ(call(kGetEqual, 7), kSuccess);
}

TEST_F(Files, AreReplacedOnlyWhenAskedToAndWhenNobodyHasThemOpen) {
  EXPECT_EQ(client.Do("insert"), "1");
  EXPECT_EQ(Create(path, DescribeParties(), kCreateOnly), kFileExists);
  EXPECT_EQ(Create(path), kFileInUse);
  std::filesystem::copy_file(path + "-wal", other + "-wal");
  EXPECT_EQ(client.Do("walk number, close"), "1 ok");
  EXPECT_EQ(Create(path, DescribeParties(), kCreateOnly), kFileExists);
  EXPECT_EQ(Opened(path).Do("walk number, close"), "1 ok");
  EXPECT_EQ(Create(path), kSuccess);
  EXPECT_EQ(Opened(path).Do("walk number, close"), "!9 ok");

  // What a former file left behind does not mislead.
  EXPECT_EQ(Create(other, DescribeParties(), kCreateOnly), kSuccess);
  EXPECT_EQ(Opened(other).Do("walk number, close"), "!9 ok");
  WriteAll(other, std::string(5000, 'x'));
  EXPECT_EQ(Create(other, DescribeParties(), kCreateOnly), kFileExists);
  EXPECT_EQ(Create(other), kSuccess);
  EXPECT_EQ(Opened(other).Do("walk number, close"), "!9 ok");
}

TEST_F(Files, AreAllThatIsLeftBehind) {
  EXPECT_EQ(client.Do("close"), "ok");
  EXPECT_EQ(Create(path), kSuccess);
  EXPECT_EQ(Create(path, DescribeParties(), kCreateOnly), kFileExists);
  for (const std::string& name : {InFolder(""), InFolder("none/A.KRV"), std::string()}) {
    EXPECT_EQ(Create(name), kInvalidFileName) << name;
  }
  const std::filesystem::directory_iterator left(folder);
  EXPECT_EQ(std::distance(begin(left), end(left)), 1);
}

TEST_F(Files, ThatCannotBeOpenedSayWhy) {
  WriteAll(InFolder("TEXT.KRV"), std::string(5000, 'x'));
  WriteAll(InFolder("EMPTY.KRV"), {});
  WriteAll(InFolder("FOREIGN.KRV"), WithByte(71, 0));  // the header's application id
  WriteAll(InFolder("LATER.KRV"), WithByte(63, 2));    // and the version of the format
  const std::pair<std::string, int> cases[] = {
      {"", kInvalidFileName},
      {folder.string(), kInvalidFileName},
      {InFolder("NONE.KRV"), kFileNotFound},
      {InFolder("NONE/A.KRV"), kFileNotFound},
      {InFolder("TEXT.KRV"), kNotARecordFile},
      {InFolder("EMPTY.KRV"), kNotARecordFile},
      {InFolder("FOREIGN.KRV"), kNotARecordFile},
      {InFolder("LATER.KRV"), kNotARecordFile},
      {folder.string() + "\\PARTIES.KRV", kSuccess},
  };
  for (const auto& [name, status] : cases) {
    Client one;
    EXPECT_EQ(one.Open(name), status) << name;
    EXPECT_EQ(one.Do("close"), status == kSuccess ? "ok" : "!3") << name;
  }
  // The name is read no further than the key buffer.
  const auto unterminated = std::make_unique<std::array<char, kMaxKeyLength>>();
  unterminated->fill('x');
  EXPECT_NE(host::EntryPoint()(kOpen, client.block.data(), nullptr, nullptr, unterminated.get(),
                               kMaxKeyLength, kOpenNormal),
            kSuccess);
}

TEST_F(Files, OpenedForReadingRefuseWrites) {
  EXPECT_EQ(client.Do("insert"), "1");
  EXPECT_EQ(Opened(path, kOpenReadOnly).Do("insert, equal number=1, update, delete, walk number"),
            "!46 1 !46 !46 1");
}

TEST_F(Files, AreCompleteOnceClosedAndFreeAfterAWhile) {
  EXPECT_EQ(client.Do("insert, close"), "1 ok");
  WriteAll(other, ReadAll(path));
  EXPECT_EQ(Opened(other).Do("walk number, close"), "1 ok");
  EXPECT_TRUE(std::filesystem::exists(path + "-wal"));
  std::this_thread::sleep_for(std::chrono::milliseconds(2100));
  EXPECT_EQ(client.Open(InFolder("NONE.KRV")), kFileNotFound);
  EXPECT_FALSE(std::filesystem::exists(path + "-wal"));
  std::filesystem::remove(path);
}

TEST_F(Files, MayBeDamaged) {
  for (int i = 0; i < 50; ++i) client.Do("insert role=M rank=-" + std::to_string(i));
  EXPECT_EQ(client.Do("close"), "ok");
  const std::string sound = ReadAll(path);
  std::mt19937 random(1);
  for (int round = 0; round < 60; ++round) {
    std::string bytes = sound;
    for (int i = 0; i < 8; ++i) {
      bytes[random() % (round % 2 == 0 ? bytes.size() : 2000)] = static_cast<char>(random());
    }
    const std::string damaged = InFolder("DAMAGED" + std::to_string(round));
    WriteAll(damaged, bytes);
    Client one;
    if (one.Open(damaged) != kSuccess) continue;
    for (const char* key : {"number", "case", "role", "rank"}) {
      one.Do(std::string("first ") + key);
      for (int steps = 0; steps < 100; ++steps) one.Do(std::string("next ") + key);
    }
    one.Do("update, insert");
    EXPECT_EQ(one.Do("close"), "ok");
  }
}

}  // namespace
}  // namespace recordmanager_tests
