// Create, Stat, Open and Close: the published buffers, names, files that are no record files, and
// what becomes of files that are there already.
#include <chrono>
#include <cstring>
#include <thread>

#include "party_file.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;
using testkit::EmbeddedCall;

class Files : public PartyFile {
 protected:
  const std::string other = InFolder("OTHER.KRV");
};

TEST_F(Files, AreToldBackByStatWithTheCounts) {
  EXPECT_EQ(client.Do("insert case=4, insert case=4, insert case=5"), "1 2 3");
  std::string expected = DescribeParties();
  expected[offsetof(FileDescription, recordCount)] = 3;
  const char uniqueValues[] = {3, 2, 1, 1};
  for (std::size_t i = 0; i < 4; ++i) {
    char* const key = &expected[sizeof(FileDescription) + i * sizeof(KeyDescription)];
    key[offsetof(KeyDescription, uniqueValues)] = uniqueValues[i];
    key[offsetof(KeyDescription, keyNumber)] = static_cast<char>(i);
  }
  const auto stat = [&](std::size_t room) {
    std::string answer(room, '#');
    auto length = static_cast<ULONG>(room);
    const int status = EmbeddedCall()(kStat, client.block.data(), answer.data(), &length,
                                      client.key.data(), kMaxKeyLength, 0);
    return std::pair(static_cast<btrieve::Status>(status), answer.substr(0, length));
  };
  EXPECT_EQ(stat(expected.size()), std::pair(kSuccess, expected));
  EXPECT_EQ(stat(0x8000), std::pair(kSuccess, expected));
  EXPECT_EQ(stat(expected.size() - 1).first, kDataBufferLength);
}

TEST_F(Files, AreNotCreatedFromDescriptionsThatCannotBeKept) {
  const KeyDescription text = DescribeKey(0, 4);
  KeyDescription beforeFirst = text;
  beforeFirst.position = 0;
  const std::pair<std::string, int> cases[] = {
      {"", kDataBufferLength},
      {DescribeParties().substr(0, sizeof(FileDescription) + 1), kDataBufferLength},
      {DescribeFile(0, {text}), kInvalidRecordLength},
      {DescribeFile(20, {text}, 1), kInvalidRecordLength},  // variable length
      {DescribeFile(20, {}), kInvalidKeyCount},
      {DescribeFile(20, std::vector(120, text)), kInvalidKeyCount},
      {DescribeFile(20, {DescribeKey(17, 4)}), kInvalidKeyPosition},
      {DescribeFile(20, {beforeFirst}), kInvalidKeyPosition},
      {DescribeFile(20, {DescribeKey(0, 0)}), kInvalidKeyLength},
      {DescribeFile(200, {DescribeKey(0, 81)}), kInvalidKeyLength},
      {DescribeFile(20, {DescribeKey(0, 3, kIntegerKey)}), kInvalidKeyLength},
      {DescribeFile(20, {DescribeKey(0, 4, 5)}), kInvalidKeyType},
      {DescribeFile(20, {DescribeKey(0, 4, kStringKey, 0x10), text}),
       kInvalidKeyFlags},  // segments
      {DescribeFile(20, {text, text}, kKeyNumbersGiven), kInvalidKeyNumber},
  };
  for (const auto& [description, status] : cases) {
    EXPECT_EQ(Create(other, description), status);
    EXPECT_FALSE(std::filesystem::exists(other)) << status;
  }
  EXPECT_EQ(Create(other, DescribeFile(80, {DescribeKey(0, 80)})), kSuccess);
}

TEST_F(Files, AreReplacedOnlyWhenAskedToAndWhenNobodyHasThemOpen) {
  EXPECT_EQ(client.Do("insert"), "1");
  EXPECT_EQ(Create(path, DescribeParties(), kCreateOnly), kFileExists);
  EXPECT_EQ(Create(path), kFileInUse);
  std::filesystem::copy_file(path + "-wal", other + "-wal");
  EXPECT_EQ(client.Do("first, next, close"), "1 !9 ok");
  EXPECT_EQ(Create(path, DescribeParties(), kCreateOnly), kFileExists);
  EXPECT_EQ(Opened(path).Do("first, next, close"), "1 !9 ok");
  EXPECT_EQ(Create(path), kSuccess);
  EXPECT_EQ(Opened(path).Do("first, close"), "!9 ok");

  // What a former file left behind does not mislead.
  EXPECT_EQ(Create(other, DescribeParties(), kCreateOnly), kSuccess);
  EXPECT_EQ(Opened(other).Do("first, close"), "!9 ok");
  WriteAll(other, std::string(5000, 'x'));
  EXPECT_EQ(Create(other, DescribeParties(), kCreateOnly), kFileExists);
  EXPECT_EQ(Create(other), kSuccess);
  EXPECT_EQ(Opened(other).Do("first, close"), "!9 ok");
}

TEST_F(Files, MayHaveLongNames) {
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder);
  const std::string name(247, 'x');
  EXPECT_EQ(Create(name + 'x'), kInvalidFileName) << "as its journal would have none";
  for (const char* outcome : {"!9 1 ok", "!9 1 ok"}) {
    EXPECT_EQ(Create(name), kSuccess);
    EXPECT_EQ(Opened(name).Do("first, insert, close"), outcome);
  }
  std::filesystem::current_path(before);
}

TEST_F(Files, ThatCannotBeOpenedSayWhy) {
  std::string foreign = ReadAll(path);
  std::string later = foreign;
  foreign.at(71) = 0;  // of the application's id
  later.at(63) = 9;    // of the format's version
  const std::pair<const char*, std::string> contents[] = {{"TEXT.KRV", std::string(5000, 'x')},
                                                          {"EMPTY.KRV", ""},
                                                          {"FOREIGN.KRV", foreign},
                                                          {"LATER.KRV", later}};
  for (const auto& [name, bytes] : contents) {
    WriteAll(InFolder(name), bytes);
    EXPECT_EQ(Client().Open(InFolder(name)), kNotARecordFile) << name;
  }
  for (const std::size_t length : {5000U, 600U}) {
    WriteAll(other, ReadAll(path).substr(0, length));
    EXPECT_EQ(Client().Open(other), kIoError) << "cut at " << length;
  }
  for (const std::string& name : {InFolder(""), InFolder("none/A.KRV"), std::string()}) {
    EXPECT_EQ(Create(name), kInvalidFileName) << name;
  }
  EXPECT_EQ(Client().Open(""), kInvalidFileName);
  EXPECT_EQ(Client().Open(folder.string()), kInvalidFileName);
  EXPECT_EQ(Client().Open(InFolder("NONE.KRV")), kFileNotFound);
  EXPECT_EQ(Client().Open(InFolder("NONE/A.KRV")), kFileNotFound);
  EXPECT_EQ(Opened(folder.string() + "\\PARTIES.KRV").Do("close, close"), "ok !3");
}

TEST_F(Files, AreCompleteOnceClosedAndFreeAfterAWhile) {
  EXPECT_EQ(client.Do("insert, close"), "1 ok");
  WriteAll(other, ReadAll(path));
  EXPECT_EQ(Opened(other).Do("first, next, close"), "1 !9 ok");
  EXPECT_TRUE(std::filesystem::exists(path + "-wal"));
  std::this_thread::sleep_for(std::chrono::milliseconds(2100));
  EXPECT_EQ(client.Open(InFolder("NONE.KRV")), kFileNotFound);
  EXPECT_FALSE(std::filesystem::exists(path + "-wal"));
  std::filesystem::remove(path);
}

}  // namespace
}  // namespace recordmanager_tests
