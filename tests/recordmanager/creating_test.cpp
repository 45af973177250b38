// Create and Stat: the published buffers, and what becomes of a file that is there already.
#include <cstring>
#include <fstream>

#include "host.h"
#include "party_file.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;

class Creating : public PartyFile {
 protected:
  // What Stat answers, cut to the length that it gives back.
  static std::vector<std::uint8_t> Stat(Client& client, std::size_t room, int& status) {
    std::vector<std::uint8_t> answer(room);
    auto length = static_cast<ULONG>(room);
    status = host::EntryPoint()(kStat, client.block.data(), answer.data(), &length,
                                client.key.data(), kMaxKeyLength, 0);
    answer.resize(length);
    return answer;
  }
};

TEST_F(Creating, IsToldBackByStatWithTheCounts) {
  for (const int caseId : {4, 4, 5}) {
    ASSERT_EQ(client.Insert(MakeParty(caseId)), kSuccess);
  }
  std::vector<std::uint8_t> expected = DescribeParties();
  const std::size_t exactly = expected.size();
  const std::uint32_t records = 3;
  std::memcpy(&expected[offsetof(FileDescription, recordCount)], &records, 4);
  const std::uint32_t values[] = {3, 2, 1, 1};
  for (std::uint8_t i = 0; i < 4; ++i) {
    std::uint8_t* key = &expected[sizeof(FileDescription) + i * sizeof(KeyDescription)];
    std::memcpy(key + offsetof(KeyDescription, uniqueValues), &values[i], 4);
    key[offsetof(KeyDescription, keyNumber)] = i;
  }

  int status = 0;
  EXPECT_EQ(Stat(client, exactly, status), expected);
  EXPECT_EQ(status, kSuccess);
  EXPECT_EQ(Stat(client, 0x8000, status), expected);
  Stat(client, exactly - 1, status);
  EXPECT_EQ(status, kDataBufferLength);
}

TEST_F(Creating, RefusesDescriptionsItCannotKeep) {
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
  const std::string other = InFolder("OTHER.KRV");
  for (const auto& [what, description, status] : cases) {
    EXPECT_EQ(Create(other, description), status) << what;
    EXPECT_FALSE(std::filesystem::exists(other)) << what;
  }
}

TEST_F(Creating, AcceptsKeysUpToTheirLimits) {
  const std::string other = InFolder("OTHER.KRV");
  const std::string longest(80, '\xFF');
  KeyDescription byNumber = DescribeKey(79, 1, kKeyDuplicates, kIntegerKey);
  byNumber.keyNumber = 7;
  KeyDescription byText = DescribeKey(0, 80, kKeyDuplicates, kStringKey);
  byText.keyNumber = 3;
  ASSERT_EQ(Create(other, DescribeFile(80, {byNumber, byText}, kKeyNumbersGiven)), kSuccess);
  Client second;
  ASSERT_EQ(second.Open(other), kSuccess);
  std::vector<std::uint8_t> record(longest.begin(), longest.end());
  ULONG length = 80;
  const auto call = [&](WORD operation, char key) {
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
  EXPECT_EQ(second.Close(), kSuccess);
}

TEST_F(Creating, ReplacesAFileOnlyWhenAskedToAndWhenNobodyHasItOpen) {
  ASSERT_EQ(client.Insert(MakeParty(1)), kSuccess);
  EXPECT_EQ(Create(path, DescribeParties(), kCreateOnly), kFileExists);
  EXPECT_EQ(Create(path, DescribeParties()), kFileInUse);
  EXPECT_EQ(Walk(client, kByNumber), "1");

  ASSERT_EQ(client.Close(), kSuccess);
  EXPECT_EQ(Create(path, DescribeParties(), kCreateOnly), kFileExists);
  ASSERT_EQ(client.Open(path), kSuccess);
  EXPECT_EQ(Walk(client, kByNumber), "1");

  ASSERT_EQ(client.Close(), kSuccess);
  EXPECT_EQ(Create(path, DescribeParties()), kSuccess);
  ASSERT_EQ(client.Open(path), kSuccess);
  EXPECT_EQ(Walk(client, kByNumber), "");
}

TEST_F(Creating, IsNotMisledByWhatAFormerFileLeftBehind) {
  ASSERT_EQ(client.Insert(MakeParty(1)), kSuccess);
  const std::string other = InFolder("OTHER.KRV");
  std::filesystem::copy_file(path + "-wal", other + "-wal");
  ASSERT_EQ(Create(other, DescribeParties(), kCreateOnly), kSuccess);
  Client second;
  ASSERT_EQ(second.Open(other), kSuccess);
  EXPECT_EQ(Walk(second, kByNumber), "");
  EXPECT_EQ(second.Close(), kSuccess);
}

TEST_F(Creating, ReplacesAlsoADamagedFile) {
  const std::string other = InFolder("OTHER.KRV");
  std::ofstream(other) << std::string(5000, 'x');
  EXPECT_EQ(Create(other, DescribeParties(), kCreateOnly), kFileExists);
  EXPECT_EQ(Create(other, DescribeParties()), kSuccess);
  Client second;
  EXPECT_EQ(second.Open(other), kSuccess);
  EXPECT_EQ(second.Close(), kSuccess);
}

TEST_F(Creating, LeavesNothingButTheFileBehind) {
  ASSERT_EQ(client.Close(), kSuccess);
  ASSERT_EQ(Create(path, DescribeParties()), kSuccess);
  EXPECT_EQ(Create(path, DescribeParties(), kCreateOnly), kFileExists);
  EXPECT_EQ(Create(InFolder(""), DescribeParties()), kInvalidFileName);
  EXPECT_EQ(Create(InFolder("none/A.KRV"), DescribeParties()), kInvalidFileName);
  EXPECT_EQ(Create("", DescribeParties()), kInvalidFileName);
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.push_back(entry.path().filename().string());
  }
  EXPECT_EQ(names, std::vector<std::string>{"PARTIES.KRV"});
}

}  // namespace
}  // namespace recordmanager_tests
