#include "parties.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <sstream>

#include "host.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;

// The fields; the first four are the keys of the same numbers.
struct Field {
  const char* name;
  std::size_t offset;
  std::size_t length;
};
constexpr Field kFields[] = {{"number", offsetof(Party, number), 4},
                             {"case", offsetof(Party, caseId), 4},
                             {"role", offsetof(Party, role), 6},
                             {"rank", offsetof(Party, rank), 2},
                             {"counter", offsetof(Party, counter), 4}};
constexpr int kRole = 2;
constexpr int kKeyCount = 4;

int NumberOf(const std::string& name) {
  for (int i = 0; i < static_cast<int>(std::size(kFields)); ++i) {
    if (name == kFields[i].name) return i;
  }
  return std::stoi(name);
}

char* FieldOf(Party& party, int field) {
  return reinterpret_cast<char*>(&party) + kFields[field].offset;
}

void Store(int field, const std::string& value, void* target) {
  if (field == kRole) {
    std::memset(target, ' ', kFields[field].length);
    std::memcpy(target, value.data(), value.size());
  } else {
    const int number = std::stoi(value);
    std::memcpy(target, &number, kFields[field].length);
  }
}

// In the order of the operations' codes.
constexpr const char* kVerbs[] = {"open",  "close",    "insert",  "update", "delete", "equal",
                                  "next",  "previous", "greater", "from",   "less",   "upto",
                                  "first", "last",     "create",  "stat",   "",       "",
                                  "",      "begin",    "end",     "abort"};

WORD OperationOf(const std::string& verb) {
  return static_cast<WORD>(std::find(std::begin(kVerbs), std::end(kVerbs), verb) -
                           std::begin(kVerbs));
}

bool IsWrite(WORD operation) { return operation == kInsert || operation == kUpdate; }

bool IsRead(WORD operation) { return operation >= kGetEqual && operation <= kGetLast; }

}  // namespace

KeyDescription DescribeKey(std::size_t offset, std::size_t length, unsigned flags, unsigned type) {
  KeyDescription key{};
  key.position = static_cast<std::uint16_t>(offset + 1);
  key.length = static_cast<std::uint16_t>(length);
  key.flags = static_cast<std::uint16_t>(flags | kKeyExtendedType);
  key.extendedType = static_cast<std::uint8_t>(type);
  return key;
}

std::vector<std::uint8_t> DescribeFile(std::size_t recordLength,
                                       const std::vector<KeyDescription>& keys,
                                       unsigned fileFlags) {
  FileDescription file{};
  file.recordLength = static_cast<std::uint16_t>(recordLength);
  file.pageSize = 4096;
  file.keyCount = static_cast<std::uint8_t>(keys.size());
  file.fileFlags = static_cast<std::uint16_t>(fileFlags);
  std::vector<std::uint8_t> bytes(sizeof(file) + keys.size() * sizeof(KeyDescription));
  std::memcpy(bytes.data(), &file, sizeof(file));
  if (!keys.empty()) {
    std::memcpy(bytes.data() + sizeof(file), keys.data(), bytes.size() - sizeof(file));
  }
  return bytes;
}

std::vector<std::uint8_t> DescribeParties() {
  std::vector<KeyDescription> keys{DescribeKey(0, 4, 0, kAutoincrementKey)};
  for (int i = 1; i < kKeyCount; ++i) {
    const unsigned type = i == kRole ? kStringKey : kIntegerKey;
    keys.push_back(
        DescribeKey(kFields[i].offset, kFields[i].length, kKeyDuplicates | kKeyModifiable, type));
  }
  return DescribeFile(sizeof(Party), keys);
}

int Create(const std::string& path, const std::vector<std::uint8_t>& description, char keyNumber) {
  std::array<std::uint8_t, kPositionBlockSize> block{};
  std::vector<std::uint8_t> data = description;
  auto length = static_cast<ULONG>(data.size());
  std::array<char, kMaxKeyLength> key{};
  path.copy(key.data(), key.size());
  return host::EntryPoint()(kCreate, block.data(), data.data(), &length, key.data(), kMaxKeyLength,
                            keyNumber);
}

int Client::Call(WORD operation, int keyNumber) {
  const auto number = static_cast<char>(keyNumber);
  if (id != decltype(id){}) {
    return host::EntryPointWithClient()(operation, block.data(), &record, &length, key.data(),
                                        kMaxKeyLength, number, id.data());
  }
  return host::EntryPoint()(operation, block.data(), &record, &length, key.data(), kMaxKeyLength,
                            number);
}

int Client::Open(const std::string& path, char mode) {
  key.fill(0);
  path.copy(reinterpret_cast<char*>(key.data()), key.size());
  return Call(kOpen, mode);
}

std::string Client::Do(const std::string& script) {
  std::string outcomes;
  std::istringstream steps(script);
  for (std::string step; std::getline(steps, step, ',');) {
    outcomes += (outcomes.empty() ? "" : " ") + Take(step);
  }
  return outcomes;
}

std::string Client::Take(const std::string& step) {
  std::istringstream words(step);
  std::string word;
  words >> word;
  if (word == "walk") return Walk(kGetFirst, kGetNext, words);
  if (word == "back") return Walk(kGetLast, kGetPrevious, words);
  const WORD operation = OperationOf(word);
  int keyNumber = 0;
  if (operation == kInsert) record = {};
  while (words >> word) {
    const std::size_t equals = word.find('=');
    const int named = NumberOf(word.substr(0, equals));
    const bool hasValue = equals != std::string::npos;
    if (hasValue) {
      Store(named, word.substr(equals + 1),
            IsWrite(operation) ? FieldOf(record, named) : reinterpret_cast<char*>(key.data()));
    }
    if (!hasValue || !IsWrite(operation)) keyNumber = named;
  }
  return Outcome(operation, keyNumber);
}

std::string Client::Walk(WORD start, WORD step, std::istream& keyName) {
  std::string name;
  keyName >> name;
  std::string numbers = Outcome(start, NumberOf(name));
  std::string next = Outcome(step, NumberOf(name));
  for (; next.front() != '!'; next = Outcome(step, NumberOf(name))) numbers += ' ' + next;
  return next == "!9" ? numbers : numbers + ' ' + next;
}

std::string Client::Outcome(WORD operation, int keyNumber) {
  const int status = Call(operation, keyNumber);
  if (status != kSuccess) return '!' + std::to_string(status);
  if (!IsRead(operation) && !IsWrite(operation)) return "ok";
  const bool keyReturned = keyNumber < 0 || std::memcmp(key.data(), FieldOf(record, keyNumber),
                                                        kFields[keyNumber].length) == 0;
  if (!keyReturned) return "without its key";
  return operation == kUpdate ? "ok" : std::to_string(record.number);
}

}  // namespace recordmanager_tests
