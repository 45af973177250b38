// Open and Close: names, files that are no record files, and files that change places meanwhile.
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

class Opening : public PartyFile {
 protected:
  static std::vector<char> ReadAll(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  static void WriteAll(const std::string& name, const std::vector<char>& bytes) {
    std::ofstream(name, std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }

  // The party file's bytes with one of them changed.
  std::vector<char> WithByte(std::size_t offset, char value) const {
    std::vector<char> bytes = ReadAll(path);
    bytes.at(offset) = value;
    return bytes;
  }
};

TEST_F(Opening, TellsWhyAFileCannotBeOpened) {
  WriteAll(InFolder("TEXT.KRV"), std::vector<char>(5000, 'x'));
  WriteAll(InFolder("EMPTY.KRV"), {});
  WriteAll(InFolder("FOREIGN.KRV"), WithByte(71, 0));  // the header's application id
  WriteAll(InFolder("LATER.KRV"), WithByte(63, 2));    // and the version of the format
  const struct {
    std::string name;
    int status;
  } cases[] = {
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
    Client other;
    EXPECT_EQ(other.Open(name), status) << name;
    EXPECT_EQ(other.Close(), status == kSuccess ? kSuccess : kFileNotOpen) << name;
  }
}

TEST_F(Opening, ReadsTheNameNoFurtherThanTheKeyBuffer) {
  const auto buffer = std::make_unique<std::array<char, kMaxKeyLength>>();
  buffer->fill('x');
  EXPECT_NE(host::EntryPoint()(kOpen, client.block.data(), nullptr, nullptr, buffer.get(),
                               kMaxKeyLength, kOpenNormal),
            kSuccess);
}

TEST_F(Opening, ForReadingRefusesWrites) {
  ASSERT_EQ(client.Insert(MakeParty(1)), kSuccess);
  Client reader;
  ASSERT_EQ(reader.Open(path, kOpenReadOnly), kSuccess);
  EXPECT_EQ(reader.Insert(MakeParty(1)), kAccessDenied);
  EXPECT_EQ(reader.Get(kGetEqual, kByNumber, 1), kSuccess);
  EXPECT_EQ(reader.Update(), kAccessDenied);
  EXPECT_EQ(reader.Delete(), kAccessDenied);
  EXPECT_EQ(Walk(reader, kByNumber), "1");
  EXPECT_EQ(reader.Close(), kSuccess);
}

TEST_F(Opening, LeavesAFileCompleteWhenItsLastUserHasClosedIt) {
  ASSERT_EQ(client.Insert(MakeParty(1)), kSuccess);
  ASSERT_EQ(client.Close(), kSuccess);
  const std::string copy = InFolder("COPY.KRV");
  WriteAll(copy, ReadAll(path));
  Client other;
  ASSERT_EQ(other.Open(copy), kSuccess);
  EXPECT_EQ(Walk(other, kByNumber), "1");
  EXPECT_EQ(other.Close(), kSuccess);
}

TEST_F(Opening, LetsGoOfAFileThatNobodyHasUsedForAWhile) {
  ASSERT_EQ(client.Insert(MakeParty(1)), kSuccess);
  ASSERT_EQ(client.Close(), kSuccess);
  EXPECT_TRUE(std::filesystem::exists(path + "-wal"));
  std::this_thread::sleep_for(std::chrono::milliseconds(2100));
  EXPECT_EQ(client.Open(InFolder("NONE.KRV")), kFileNotFound);
  EXPECT_FALSE(std::filesystem::exists(path + "-wal"));
  std::filesystem::remove(path);
}

TEST_F(Opening, SurvivesDamagedFiles) {
  for (int i = 0; i < 50; ++i) {
    ASSERT_EQ(client.Insert(MakeParty(i % 7, "M", -i)), kSuccess);
  }
  ASSERT_EQ(client.Close(), kSuccess);
  const std::vector<char> sound = ReadAll(path);
  std::mt19937 random(1);
  for (int round = 0; round < 60; ++round) {
    std::vector<char> bytes = sound;
    for (int i = 0; i < 8; ++i) {
      bytes[random() % (round % 2 == 0 ? bytes.size() : 2000)] = static_cast<char>(random());
    }
    const std::string damaged = InFolder("DAMAGED" + std::to_string(round));
    WriteAll(damaged, bytes);
    Client other;
    if (other.Open(damaged) != kSuccess) {
      continue;
    }
    for (const int key : {kByNumber, kByCase, kByRole, kByRank}) {
      int status = other.Call(kGetFirst, key);
      for (int steps = 0; status == kSuccess && steps < 100; ++steps) {
        status = other.Call(kGetNext, key);
      }
      other.Update(key);
    }
    other.Insert(MakeParty(1));
    EXPECT_EQ(other.Close(), kSuccess);
  }
}

}  // namespace
}  // namespace recordmanager_tests
