#include "sample_office.h"

#include <sstream>
#include <vector>

#include "frame/attach.h"
#include "office/command_line.h"

Outcome Qlx(const std::string& command) {
  std::vector<std::string> arguments;
  std::istringstream words(command);
  for (std::string word; std::getline(words, word, '|');) arguments.push_back(word);
  std::ostringstream out;
  std::ostringstream err;
  const int code = office::Run(arguments, out, err);
  return {code, out.str(), err.str()};
}

void SampleOffice::SetUpTestSuite() {
  registry = std::make_unique<PrivateRegistry>();
  ASSERT_EQ(Qlx("office|create|" + Folder()).err, "");
  ASSERT_EQ(Qlx("setup|" + Folder()).err, "");
  qlx99::AttachLibrary(GetModuleHandleA(nullptr));
}

void SampleOffice::TearDownTestSuite() { registry.reset(); }
