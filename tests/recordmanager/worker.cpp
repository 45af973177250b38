// A process that works on a party file beside the test's own: worker TASK FILE ... Exit code 0 when
// all went well.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "parties.h"
#include "support/world.h"

namespace {

using namespace btrieve;
using recordmanager_tests::Client;
using recordmanager_tests::MakeParty;

bool IsBusy(int status) { return status == kRecordInUse || status == kFileInUse; }

// Adds 1 to the counter of record 1, `times` times, reading again after each conflict.
int Count(Client& client, int times) {
  for (int done = 0; done < times;) {
    int status = client.Get(kGetEqual, recordmanager_tests::kByNumber, 1);
    if (status == kSuccess) {
      ++client.record.counter;
      status = client.Update();
    }
    if (status != kSuccess && status != kConflict && !IsBusy(status)) {
      return status;
    }
    done += status == kSuccess ? 1 : 0;
  }
  return kSuccess;
}

// Inserts records of that case; each number that was acknowledged goes to the log at once.
int Insert(Client& client, int caseId, int times, const char* logName) {
  std::FILE* log = std::fopen(logName, "wb");
  int status = kSuccess;
  for (int done = 0; done < times && (status == kSuccess || IsBusy(status));) {
    status = client.Insert(MakeParty(caseId, "W"));
    if (status == kSuccess) {
      std::fwrite(&client.record.number, sizeof(client.record.number), 1, log);
      std::fflush(log);
      ++done;
    }
  }
  std::fclose(log);
  return status;
}

// Holds a transaction on the file from when `flag` appears until it has been removed.
int Hold(Client& client, const char* flag) {
  client.Call(kBeginTransaction);
  const int status = client.Insert(MakeParty(1));
  std::fclose(std::fopen(flag, "wb"));
  while (std::filesystem::exists(flag)) {
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  client.Call(kEndTransaction);
  return status;
}

int Run(const std::string& task, Client& client, char** arguments) {
  if (task == "count") {
    return Count(client, std::atoi(arguments[0]));
  }
  if (task == "insert") {
    return Insert(client, std::atoi(arguments[0]), std::atoi(arguments[1]), arguments[2]);
  }
  return Hold(client, arguments[0]);
}

}  // namespace

int main(int count, char** arguments) {
  // Not for ever, should the test that started it have ended badly.
  qlx99::tests::world::SetDeadline(std::chrono::minutes(1), "record_manager_worker");
  Client client;
  if (count < 4 || client.Open(arguments[2]) != kSuccess) {
    return 1;
  }
  const int status = Run(arguments[1], client, arguments + 3);
  return status == kSuccess ? client.Close() : status;
}
