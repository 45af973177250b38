// The office that most tests of exports begin with: a case with all that can belong to it, among
// records of others.
#pragma once

#include "support/export_test.h"

namespace qlx99::tests {

class ExampleOfficeTest : public ScriptedExportTest {
 protected:
  ExampleOfficeTest();
};

}  // namespace qlx99::tests
