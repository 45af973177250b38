#include "worker.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>
#include <utility>

#include "party_file.h"

namespace recordmanager_tests {
namespace {

std::vector<std::string> Preceded(std::vector<std::string> arguments, const char* option) {
  arguments.insert(arguments.begin(), option);
  return arguments;
}

// Calls when main() has ended.
class Late {
 public:
  Late() = default;
  Late(const Late&) = delete;
  Late& operator=(const Late&) = delete;
  ~Late() {
    if (client.Do("first") != "1") std::_Exit(1);
  }

  Client client;
};

}  // namespace

Worker::Worker(std::vector<std::string> arguments, const char* option)
    : testkit::Process(Preceded(std::move(arguments), option)) {}

int Leave(const std::vector<std::string>& arguments) {
  static Late late;
  const std::string& log = arguments.at(1);
  std::thread([=] { Work({arguments.at(0), "insert", "1000000", log}); }).detach();
  std::error_code notYet;
  while (std::filesystem::file_size(log, notYet) + 1 < 20) std::this_thread::yield();
  return late.client.Open(arguments.at(0)) == btrieve::kSuccess ? 0 : 1;
}

int Work(const std::vector<std::string>& arguments) {
  Client client;
  if (client.Open(arguments.at(0)) != btrieve::kSuccess) return 1;
  std::ofstream log(arguments.size() > 3 ? arguments[3] : "");
  for (int left = arguments.size() > 2 ? std::stoi(arguments[2]) : 1; left > 0;) {
    const std::string outcome = client.Do(arguments.at(1));
    const std::string failure = outcome.substr(std::min(outcome.find('!'), outcome.size()));
    if (failure.empty()) {
      log << outcome << std::endl;
      --left;
    } else if (failure != "!80" && failure != "!84" && failure != "!85") {
      return 1;
    }
  }
  return client.Do("close") == "ok" ? 0 : 1;
}

}  // namespace recordmanager_tests
