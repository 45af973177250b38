// The sample office in a folder of its own, made and configured as an administrator does it: by the
// tool's commands.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "testkit/process.h"

// What one command did.
struct Outcome {
  int code;
  std::string out;
  std::string err;
};

// The arguments are divided by bars: "letter|12345678|--role|M ".
Outcome Qlx(const std::string& command);

using testkit::PrivateRegistry;
using testkit::TemporaryFolder;

// One office for all tests of a suite; tests that write choose cases of their own.
class SampleOffice : public testing::Test {
 protected:
  static void SetUpTestSuite();
  static void TearDownTestSuite();

  static std::string Folder() { return (registry->Folder() / "office").string(); }

 private:
  static inline std::unique_ptr<PrivateRegistry> registry;
};
