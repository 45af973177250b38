// A process that works on a record file beside the tests' own: worker TASK FILE NUMBER ..., where
// NUMBER is the value of key 0 of a record. Exit code 0 when all went well, otherwise a status.
//
//   remove FILE NUMBER
//   add FILE NUMBER OFFSET TIMES    adds 1 to the integer at that place of the record
//   copy FILE NUMBER LOG TIMES      inserts the record under new numbers, which go to the log
//   hold FILE NUMBER FLAG           copies it in a transaction that lasts as long as the flag
#include <array>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "host.h"

namespace {

using namespace btrieve;

std::array<char, kPositionBlockSize> positionBlock{};
std::array<char, 1024> record{};
std::array<char, kMaxKeyLength> key{};
ULONG length = 0;

int Call(WORD operation) {
  return recordmanager_tests::host::EntryPoint()(operation, positionBlock.data(), record.data(),
                                                 &length, key.data(), kMaxKeyLength, 0);
}

int Open(const std::string& path) {
  path.copy(key.data(), key.size());
  return Call(kOpen);
}

int Find(std::int32_t number) {
  std::memcpy(key.data(), &number, sizeof(number));
  length = static_cast<ULONG>(record.size());
  return Call(kGetEqual);
}

// Changes an integer of the record that was found.
int Add(std::size_t offset) {
  std::int32_t value = 0;
  std::memcpy(&value, &record.at(offset), sizeof(value));
  ++value;
  std::memcpy(&record.at(offset), &value, sizeof(value));
  return Call(kUpdate);
}

// Inserts the record that was found once more, under a new number; returns the number, or 0.
std::int32_t Copy() {
  std::int32_t number = 0;
  std::memcpy(record.data(), &number, sizeof(number));
  if (Call(kInsert) != kSuccess) return 0;
  std::memcpy(&number, record.data(), sizeof(number));
  return number;
}

bool IsBusy(int status) { return status == kRecordInUse || status == kFileInUse; }

// Reads again after each conflict.
int AddTimes(std::int32_t number, std::size_t offset, int times) {
  while (times > 0) {
    int status = Find(number);
    if (status == kSuccess) status = Add(offset);
    if (status == kSuccess) --times;
    if (status != kSuccess && status != kConflict && !IsBusy(status)) return status;
  }
  return kSuccess;
}

// Each number that was acknowledged goes to the log at once.
int CopyTimes(const std::string& logName, int times) {
  std::ofstream log(logName);
  while (times > 0) {
    const std::int32_t number = Copy();
    if (number == 0) continue;  // busy
    log << number << std::endl;
    --times;
  }
  return kSuccess;
}

// Holds a transaction from when the flag appears until it is removed.
int Hold(const std::string& flag) {
  Call(kBeginTransaction);
  const bool written = Copy() != 0;
  std::ofstream(flag) << "held";
  while (std::filesystem::exists(flag)) std::this_thread::sleep_for(std::chrono::milliseconds(2));
  const int status = Call(kEndTransaction);
  return written ? status : kIoError;
}

int Run(const std::string& task, std::int32_t number, const std::vector<std::string>& more) {
  if (const int status = Find(number); status != kSuccess) return status;
  if (task == "remove") return Call(kDelete);
  if (task == "hold") return Hold(more.at(0));
  const int times = std::stoi(more.at(1));
  return task == "copy" ? CopyTimes(more.at(0), times)
                        : AddTimes(number, std::stoul(more.at(0)), times);
}

}  // namespace

int main(int count, char** arguments) {
  const std::vector<std::string> texts(arguments + 1, arguments + count);
  if (const int status = Open(texts.at(1)); status != kSuccess) return status;
  const int result = Run(texts.at(0), std::stoi(texts.at(2)), {texts.begin() + 3, texts.end()});
  Call(kClose);
  return result;
}
