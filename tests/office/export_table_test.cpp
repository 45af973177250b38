// The tool's knowledge of the exports, against the library's definition of them.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>
#include <string>

#include "office/export_call.h"

namespace office {
namespace {

// "WVNext@12" means three arguments; the tool counts the buffer apart. The window procedure is not
// for macros.
TEST(ExportTable, HasEveryExportWithAsManyArgumentsAsItsDefinition) {
  std::set<std::string> known;
  for (const Export& one : Exports()) {
    const std::size_t arguments = one.arguments.size() + (one.fields.empty() ? 0 : 1);
    known.insert(std::string(one.name) + "@" + std::to_string(4 * arguments));
  }
  std::set<std::string> defined;
  std::istringstream definitions(QLX99_EXPORTS);
  for (std::string one; definitions >> one;) defined.insert(one);
  EXPECT_EQ(defined.erase("MainWndProc@16"), 1U);
  EXPECT_EQ(known, defined);
}

TEST(DeliveredRecord, NamesFieldsOnlyWhenNoneIsMissing) {
  const Export& called = ExportNamed("BLesenDLL");
  const DeliveredRecord whole(called, "4711|2 |0|");
  ASSERT_TRUE(whole.IsComplete());
  EXPECT_EQ(whole["addressNumber"], "4711");
  EXPECT_EQ(whole["relationCode"], "2");
  EXPECT_EQ(whole.Fields()[1], "2 ");
  EXPECT_EQ(whole["linkNumber"], "");
  EXPECT_FALSE(DeliveredRecord(called, "4711|2 |0").IsComplete());
  EXPECT_FALSE(DeliveredRecord(called, "").IsComplete());
  EXPECT_EQ(DeliveredRecord(called, "").Fields().size(), 1U);
}

}  // namespace
}  // namespace office
