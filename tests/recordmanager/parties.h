// The record file that these tests work on, and a client of it: a party's record with one key of
// each type.
#pragma once

#include <array>
#include <cstdint>
#include <istream>
#include <string>
#include <vector>

#include "recordmanager/btrieve.h"

namespace recordmanager_tests {

#pragma pack(push, 1)
struct Party {
  std::int32_t number = 0;                                 // key 0: autoincrement, unique, fixed
  std::int32_t caseId = 0;                                 // key 1: integer, duplicates, modifiable
  std::array<char, 6> role{' ', ' ', ' ', ' ', ' ', ' '};  // key 2: string, the same
  std::int16_t rank = 0;                                   // key 3: integer of two bytes, the same
  std::int32_t counter = 0;
};
#pragma pack(pop)

btrieve::KeyDescription DescribeKey(std::size_t offset, std::size_t length, unsigned flags,
                                    unsigned type);

// The buffer that Create takes, for that record length and those keys.
std::vector<std::uint8_t> DescribeFile(std::size_t recordLength,
                                       const std::vector<btrieve::KeyDescription>& keys,
                                       unsigned fileFlags = 0);
std::vector<std::uint8_t> DescribeParties();

int Create(const std::string& path,
           const std::vector<std::uint8_t>& description = DescribeParties(),
           char keyNumber = btrieve::kCreateOver);

// One position block with the buffers of its calls. A copy is a client with a copy of the block.
class Client {
 public:
  std::array<std::uint8_t, btrieve::kPositionBlockSize> block{};
  std::array<std::uint8_t, btrieve::kClientIdSize> id{};  // all zeros: calls go through BTRCALL
  Party record;
  ULONG length = sizeof(Party);
  std::array<std::uint8_t, btrieve::kMaxKeyLength> key{};

  // Any call, with the members above as its arguments. Returns the status.
  int Call(WORD operation, int keyNumber = 0);

  int Open(const std::string& path, char mode = btrieve::kOpenNormal);

  // Takes the steps of a script and returns what came of each: the number of the record that was
  // read or inserted, "ok", or "!" and the status.
  //
  //   "insert case=7 role=M, equal case=7, next case, update rank=5 case, delete"
  //
  // A key is called number, case, role, rank, or by its number. Insert and update write the given
  // fields, of a fresh record and of the present one, by the key named without a value or by
  // number. Besides the published operations there are walk and back, which read along a whole key.
  std::string Do(const std::string& script);

 private:
  std::string Take(const std::string& step);
  std::string Walk(WORD start, WORD step, std::istream& keyName);
  std::string Outcome(WORD operation, int keyNumber);
};

}  // namespace recordmanager_tests
