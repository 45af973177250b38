#include "worker.h"

#include <fstream>

#include "party_file.h"

namespace recordmanager_tests {

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
