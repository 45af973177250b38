#include "party_file.h"

#include <algorithm>
#include <cstring>
#include <sstream>
#include <thread>

namespace recordmanager_tests {
namespace {

using namespace btrieve;

struct PartyField {
  const char* name;
  std::size_t offset;
  std::size_t length;
  int type;  // of the key with the field's index
};
constexpr PartyField kFields[] = {{"number", 0, 4, kAutoincrementKey},
                                  {"case", 4, 4, kIntegerKey},
                                  {"role", 8, 6, kStringKey},
                                  {"rank", 14, 2, kIntegerKey},
                                  {"counter", kCounterOffset, 4, -1}};

// In the order of the operations' codes.
constexpr const char* kVerbs[] = {"open",  "close",    "insert",  "update", "delete", "equal",
                                  "next",  "previous", "greater", "from",   "less",   "upto",
                                  "first", "last",     "create",  "stat",   "",       "",
                                  "",      "begin",    "end",     "abort"};

WORD OperationOf(const std::string& verb) {
  return static_cast<WORD>(std::find(std::begin(kVerbs), std::end(kVerbs), verb) - kVerbs);
}

int IndexOf(const std::string& name) {
  const auto* const found = std::find_if(std::begin(kFields), std::end(kFields),
                                         [&](const auto& field) { return name == field.name; });
  return found == std::end(kFields) ? std::stoi(name) : static_cast<int>(found - kFields);
}

void Store(const PartyField& field, const std::string& value, char* target) {
  if (field.type == kStringKey) {
    std::memset(target, ' ', field.length);
    value.copy(target, field.length);
  } else {
    const int number = std::stoi(value);
    std::memcpy(target, &number, field.length);
  }
}

// Of this process as a worker.
std::string flag;

std::string FlagOf(const std::string& file) { return file + ".held"; }

void Pause() { std::this_thread::sleep_for(std::chrono::milliseconds(5)); }

}  // namespace

std::string DescribeParties() {
  std::vector<KeyDescription> keys;
  for (const auto& [name, offset, length, type] : kFields) {
    const unsigned flags = type == kAutoincrementKey ? 0U : kKeyDuplicates | kKeyModifiable;
    if (type >= 0) keys.push_back(DescribeKey(offset, length, static_cast<unsigned>(type), flags));
  }
  return DescribeFile(kPartyLength, keys);
}

int Create(const std::string& path, const std::string& description, char way) {
  return btrieve::Client(testkit::EmbeddedEntryPoint()).Create(path, description, way);
}

std::string InMode(char mode, std::string bytes) {
  bytes.at(18) = bytes.at(19) = mode;
  return bytes;
}

std::string Synchronised(const std::string& begun) {
  const std::string head = "\xD9\xD5\x05\xF9\x20\xA1\x63\xD7\xFF\xFF\xFF\xFF";
  return head + begun.substr(head.size());
}

int Client::Call(WORD operation, int keyNumber) {
  return testkit::EmbeddedCallId()(operation, block.data(), record.data(), &length, key.data(),
                                   kMaxKeyLength, static_cast<char>(keyNumber), id.data());
}

std::int32_t Client::Integer(std::size_t offset) const {
  std::int32_t value = 0;
  std::memcpy(&value, record.data() + offset, sizeof(value));
  return value;
}

std::string Client::Do(const std::string& script) {
  std::string outcomes;
  std::istringstream steps(script);
  for (std::string step; std::getline(steps, step, ',');) outcomes += Take(step);
  return outcomes.substr(1);
}

std::string Client::Take(const std::string& step) {
  std::istringstream words(step);
  std::string word;
  words >> word;
  if (word == "hold") {
    testkit::WriteAll(flag, "");
    // Nobody may be left to let it go on.
    for (int i = 0; i < 12'000 && std::filesystem::exists(flag); ++i) Pause();
    return " ok";
  }
  const bool repeated = word.ends_with('*');
  const WORD operation = OperationOf(word.substr(0, word.size() - (repeated ? 1 : 0)));
  const bool writes = operation == kInsert || operation == kUpdate;
  if (operation == kInsert) record = {};
  int keyNumber = 0;
  while (words >> word) {
    const std::size_t equals = word.find('=');
    const int index = IndexOf(word.substr(0, equals));
    if (!writes || equals == std::string::npos) keyNumber = index;
    if (equals == std::string::npos) continue;
    const PartyField& field = kFields[index];
    Store(field, word.substr(equals + 1), writes ? record.data() + field.offset : key.data());
  }
  std::string outcomes;
  do {
    outcomes += ' ' + Outcome(operation, keyNumber);
  } while (repeated && outcomes.find('!') == std::string::npos);
  return outcomes;
}

std::string Client::Outcome(WORD operation, int keyNumber) {
  const int status = Call(operation, keyNumber);
  if (status != kSuccess) return '!' + std::to_string(status);
  const bool reads = operation >= kGetEqual && operation <= kGetLast;
  if ((reads || operation == kInsert || operation == kUpdate) && keyNumber >= 0) {
    const PartyField& field = kFields[keyNumber];
    if (std::memcmp(key.data(), record.data() + field.offset, field.length) != 0) return "keyless";
  }
  return reads || operation == kInsert ? std::to_string(Number()) : "ok";
}

Worker::Worker(const std::string& file, const std::string& script, int times)
    : testkit::Process({kWorkerOption, file, script, std::to_string(times)}), flag_(FlagOf(file)) {
  if (script.find("hold") != std::string::npos) WaitUntilItHolds();
}

void Worker::WaitUntilItHolds() const {
  for (int i = 0; i < 2000 && !std::filesystem::exists(flag_); ++i) Pause();
  EXPECT_TRUE(std::filesystem::exists(flag_));
}

void Worker::Kill() {
  EXPECT_EQ(testkit::Process::Kill(), kKilled);
  GoOn();
}

int Work(const std::vector<std::string>& arguments) {
  flag = FlagOf(arguments.at(0));
  Client client;
  if (const int status = client.Open(arguments.at(0)); status != kSuccess) return status;
  for (int left = std::stoi(arguments.at(2)); left > 0; --left) {
    const std::string outcomes = client.Do(arguments.at(1));
    const std::size_t failure = outcomes.find('!');
    if (failure != std::string::npos) return std::stoi(outcomes.substr(failure + 1));
  }
  return client.Do("close") == "ok" ? 0 : 1;
}

PartyFile::PartyFile() {
  EXPECT_EQ(Create(path), kSuccess);
  EXPECT_EQ(client.Open(path), kSuccess);
}

PartyFile::~PartyFile() {
  client.Do("close");
  for (Client& other : others_) other.Do("close");
  testkit::ReleaseEmbedded();  // which keeps files open for a while
}

Client& PartyFile::Opened(const std::string& name, char mode) {
  EXPECT_EQ(others_.emplace_back().Open(name, mode), kSuccess) << name;
  return others_.back();
}

}  // namespace recordmanager_tests
