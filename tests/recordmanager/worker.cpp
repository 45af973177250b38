#include "worker.h"

#include "party_file.h"

namespace recordmanager_tests {

int Work(const std::vector<std::string>& arguments) {
  Client client;
  if (client.Open(arguments.at(0)) != btrieve::kSuccess) return 1;
  const std::string outcome = client.Do(arguments.at(1) + ", close");
  return outcome.find('!') == std::string::npos ? 0 : 1;
}

}  // namespace recordmanager_tests
