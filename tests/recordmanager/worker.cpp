// A process that works on a record file beside the test's own: worker TASK FILE ... Exit code 0
// when all went well, otherwise a status.
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <thread>

#include "host.h"
#include "parties.h"

namespace {

using namespace btrieve;
using recordmanager_tests::Client;

// A record of any layout, found by a number that is its key 0.
struct AnyRecord {
  Client client;
  std::array<char, 1024> bytes{};
  ULONG length = 0;

  int Call(WORD operation) {
    return recordmanager_tests::host::EntryPoint()(operation, client.block.data(), bytes.data(),
                                                   &length, client.key.data(), kMaxKeyLength, 0);
  }
  int Find(std::int32_t number) {
    length = static_cast<ULONG>(bytes.size());
    std::memcpy(client.key.data(), &number, sizeof(number));
    return Call(kGetEqual);
  }
};

bool IsBusy(int status) { return status == kRecordInUse || status == kFileInUse; }

// add FILE NUMBER OFFSET TIMES: adds 1 to an integer of the record, reading again after each
// conflict.
int Add(AnyRecord& record, char** arguments) {
  const int times = std::atoi(arguments[2]);
  for (int done = 0; done < times;) {
    int status = record.Find(std::atoi(arguments[0]));
    if (status == kSuccess) {
      char* const at = record.bytes.data() + std::atoi(arguments[1]);
      std::int32_t value = 0;
      std::memcpy(&value, at, sizeof(value));
      ++value;
      std::memcpy(at, &value, sizeof(value));
      status = record.Call(kUpdate);
    }
    if (status != kSuccess && status != kConflict && !IsBusy(status)) return status;
    if (status == kSuccess) ++done;
  }
  return kSuccess;
}

// remove FILE NUMBER
int Remove(AnyRecord& record, char** arguments) {
  const int status = record.Find(std::atoi(arguments[0]));
  return status == kSuccess ? record.Call(kDelete) : status;
}

// insert FILE CASE TIMES LOG: each number that was acknowledged goes to the log at once.
int Insert(Client& client, char** arguments) {
  std::ofstream log(arguments[2]);
  const std::string script = std::string("insert case=") + arguments[0];
  for (int left = std::atoi(arguments[1]); left > 0;) {
    const std::string outcome = client.Do(script);
    if (outcome.front() != '!') {
      log << outcome << std::endl;
      --left;
    } else if (outcome != "!84" && outcome != "!85") {
      return 1;
    }
  }
  return 0;
}

// hold FILE FLAG: holds a transaction from when the flag appears until it has been removed.
int Hold(Client& client, char** arguments) {
  if (client.Do("begin, insert") != "ok 2") return 1;
  std::ofstream(arguments[0]) << "held";
  while (std::filesystem::exists(arguments[0])) {
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return client.Do("end") == "ok" ? 0 : 1;
}

}  // namespace

int main(int count, char** arguments) {
  AnyRecord record;
  if (count < 4 || record.client.Open(arguments[2]) != kSuccess) return 1;
  const std::string task = arguments[1];
  int result = 1;
  if (task == "add") result = Add(record, arguments + 3);
  if (task == "remove") result = Remove(record, arguments + 3);
  if (task == "insert") result = Insert(record.client, arguments + 3);
  if (task == "hold") result = Hold(record.client, arguments + 3);
  record.client.Do("close");
  return result;
}
