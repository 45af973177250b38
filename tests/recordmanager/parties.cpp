#include "parties.h"

#include <cstddef>
#include <cstring>

#include "host.h"

namespace recordmanager_tests {

Party MakeParty(int caseId, const std::string& role, int rank) {
  Party party;
  party.caseId = caseId;
  party.role.fill(' ');
  role.copy(party.role.data(), party.role.size());
  party.rank = static_cast<std::int16_t>(rank);
  return party;
}

btrieve::KeyDescription DescribeKey(std::size_t offset, std::size_t length, unsigned flags,
                                    unsigned type) {
  btrieve::KeyDescription key{};
  key.position = static_cast<std::uint16_t>(offset + 1);
  key.length = static_cast<std::uint16_t>(length);
  key.flags = static_cast<std::uint16_t>(flags | btrieve::kKeyExtendedType);
  key.extendedType = static_cast<std::uint8_t>(type);
  return key;
}

std::vector<std::uint8_t> DescribeFile(std::size_t recordLength,
                                       const std::vector<btrieve::KeyDescription>& keys,
                                       unsigned fileFlags) {
  btrieve::FileDescription file{};
  file.recordLength = static_cast<std::uint16_t>(recordLength);
  file.pageSize = 4096;
  file.keyCount = static_cast<std::uint8_t>(keys.size());
  file.fileFlags = static_cast<std::uint16_t>(fileFlags);
  std::vector<std::uint8_t> bytes(sizeof(file) + keys.size() * sizeof(btrieve::KeyDescription));
  std::memcpy(bytes.data(), &file, sizeof(file));
  if (!keys.empty()) {
    std::memcpy(bytes.data() + sizeof(file), keys.data(), bytes.size() - sizeof(file));
  }
  return bytes;
}

std::vector<std::uint8_t> DescribeParties() {
  constexpr unsigned kFree = btrieve::kKeyDuplicates | btrieve::kKeyModifiable;
  return DescribeFile(
      kPartyLength,
      {DescribeKey(offsetof(Party, number), sizeof(Party::number), 0, btrieve::kAutoincrementKey),
       DescribeKey(offsetof(Party, caseId), sizeof(Party::caseId), kFree, btrieve::kIntegerKey),
       DescribeKey(offsetof(Party, role), sizeof(Party::role), kFree, btrieve::kStringKey),
       DescribeKey(offsetof(Party, rank), sizeof(Party::rank), kFree, btrieve::kIntegerKey)});
}

int Create(const std::string& path, const std::vector<std::uint8_t>& description, char keyNumber) {
  std::array<std::uint8_t, btrieve::kPositionBlockSize> block{};
  std::vector<std::uint8_t> data = description;
  auto length = static_cast<ULONG>(data.size());
  std::array<char, btrieve::kMaxKeyLength> key{};
  path.copy(key.data(), key.size());
  return host::EntryPoint()(btrieve::kCreate, block.data(), data.data(), &length, key.data(),
                            btrieve::kMaxKeyLength, keyNumber);
}

int Client::Call(WORD operation, int keyNumber) {
  return host::EntryPoint()(operation, block.data(), &record, &length, key.data(),
                            btrieve::kMaxKeyLength, static_cast<char>(keyNumber));
}

int Client::Open(const std::string& path, char mode) {
  key.fill(0);
  path.copy(reinterpret_cast<char*>(key.data()), key.size());
  return Call(btrieve::kOpen, mode);
}

int Client::Insert(const Party& party, int keyNumber) {
  record = party;
  return Call(btrieve::kInsert, keyNumber);
}

int Client::Get(WORD operation, int keyNumber, int value) {
  std::memcpy(key.data(), &value, sizeof(value));
  return Call(operation, keyNumber);
}

int Client::Get(WORD operation, int keyNumber, const std::string& value) {
  std::memset(key.data(), ' ', sizeof(Party::role));
  std::memcpy(key.data(), value.data(), value.size());
  return Call(operation, keyNumber);
}

}  // namespace recordmanager_tests
