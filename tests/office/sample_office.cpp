#include "sample_office.h"

#include <random>
#include <sstream>

#include "frame/attach.h"
#include "office/command_line.h"
#include "office/host.h"

Outcome Qlx(const std::vector<std::string>& arguments) {
  std::ostringstream out;
  std::ostringstream err;
  const int code = office::Run(arguments, out, err);
  return {code, out.str(), err.str()};
}

TemporaryFolder::TemporaryFolder()
    : path_(std::filesystem::temp_directory_path() /
            ("qlx_office_" + std::to_string(std::random_device()()))) {
  std::filesystem::create_directories(path_);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code error;  // the record manager may still hold its files
  std::filesystem::remove_all(path_, error);
}

std::string TemporaryFolder::Text() const { return office::PathText(path_); }

std::unique_ptr<SampleOffice::Made> SampleOffice::made;

void SampleOffice::SetUpTestSuite() {
  made = std::make_unique<Made>();
  ASSERT_EQ(Qlx({"office", "create", Folder()}).err, "");
  ASSERT_EQ(Qlx({"setup", Folder()}).err, "");
  qlx99::AttachLibrary(GetModuleHandleA(nullptr));
}

void SampleOffice::TearDownTestSuite() { made.reset(); }
