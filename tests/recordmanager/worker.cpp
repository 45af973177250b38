#include "worker.h"

#include "party_file.h"

namespace recordmanager_tests {
namespace {

std::vector<std::string> Preceded(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), kWorkerOption);
  return arguments;
}

}  // namespace

Worker::Worker(std::vector<std::string> arguments)
    : testkit::Process(Preceded(std::move(arguments))) {}

int Work(const std::vector<std::string>& arguments) {
  Client client;
  if (client.Open(arguments.at(0)) != btrieve::kSuccess) return 1;
  for (int left = arguments.size() > 2 ? std::stoi(arguments[2]) : 1; left > 0; --left) {
    if (client.Do(arguments.at(1)).find('!') != std::string::npos) return 1;
  }
  return client.Do("close") == "ok" ? 0 : 1;
}

}  // namespace recordmanager_tests
