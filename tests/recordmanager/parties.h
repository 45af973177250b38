// The record file that these tests work on, and a client of it: a party's record with one key of
// each type.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "recordmanager/btrieve.h"

namespace recordmanager_tests {

#pragma pack(push, 1)
struct Party {
  std::int32_t number = 0;     // key 0: autoincrement, unique, fixed
  std::int32_t caseId = 0;     // key 1: integer, duplicates, modifiable
  std::array<char, 6> role{};  // key 2: string, duplicates, modifiable
  std::int16_t rank = 0;       // key 3: integer of two bytes, duplicates, modifiable
  std::int32_t counter = 0;
};
#pragma pack(pop)

inline constexpr std::size_t kPartyLength = sizeof(Party);
inline constexpr int kByNumber = 0, kByCase = 1, kByRole = 2, kByRank = 3;

Party MakeParty(int caseId, const std::string& role = "", int rank = 0);

btrieve::KeyDescription DescribeKey(std::size_t offset, std::size_t length, unsigned flags,
                                    unsigned type);

// The buffer that Create takes, for that record length and those keys.
std::vector<std::uint8_t> DescribeFile(std::size_t recordLength,
                                       const std::vector<btrieve::KeyDescription>& keys,
                                       unsigned fileFlags = 0);
std::vector<std::uint8_t> DescribeParties();

int Create(const std::string& path, const std::vector<std::uint8_t>& description,
           char keyNumber = btrieve::kCreateOver);

// One position block with the buffers of its calls. A copy is a client with a copy of the block.
class Client {
 public:
  std::array<std::uint8_t, btrieve::kPositionBlockSize> block{};
  Party record;
  ULONG length = kPartyLength;
  std::array<std::uint8_t, btrieve::kMaxKeyLength> key{};

  // Any call, with the members above as its arguments. Returns the status.
  int Call(WORD operation, int keyNumber = 0);

  int Open(const std::string& path, char mode = btrieve::kOpenNormal);
  int Close() { return Call(btrieve::kClose); }

  // `record` is what is written; Insert leaves it as it was returned.
  int Insert(const Party& party, int keyNumber = kByNumber);
  int Update(int keyNumber = kByNumber) { return Call(btrieve::kUpdate, keyNumber); }
  int Delete() { return Call(btrieve::kDelete); }

  // Reads with a key value of the key's type.
  int Get(WORD operation, int keyNumber, int value);
  int Get(WORD operation, int keyNumber, const std::string& value);
};

}  // namespace recordmanager_tests
