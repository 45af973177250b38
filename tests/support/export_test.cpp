#include "support/export_test.h"

#include <algorithm>

namespace qlx99::tests {
namespace {

using testing::AnyOfArray;
using testing::IsEmpty;

constexpr int kStatuses[] = {btrieve::kIoError, btrieve::kKeyNotFound, btrieve::kEndOfFile};

// The messages about a file, among others that the export may have.
std::vector<MessageBox> FileMessages(std::vector<MessageBox> messages) {
  std::erase_if(messages,
                [](const auto& message) { return !message.text.starts_with("Die Datei"); });
  return messages;
}

std::vector<MessageBox> ExpectedMessages(const ManagerCall& failed) {
  if (failed.operation == btrieve::kOpen) return {CannotOpen(failed.file)};
  if (failed.operation == btrieve::kClose) return {CannotClose(failed.file)};
  return {};
}

}  // namespace

void ExportTest::TearDown() {
  library.Free();
  UnloadRecordManagers();
  user.ExpectNothingLeft();
}

void ScriptedExportTest::TearDown() {
  EXPECT_THAT(manager.OpenFiles(), IsEmpty());
  ExportTest::TearDown();
}

void ScriptedExportTest::ExpectSoundWhicheverCallFails(
    const std::function<std::int32_t(char* buffer)>& run,
    const std::vector<std::int32_t>& results) {
  manager.Forget();
  CallerBuffer unharmed;
  run(unharmed);
  const std::size_t count = manager.Calls().size();
  EXPECT_GT(count, 0U);
  user.Messages();

  for (const int status : kStatuses) {
    for (std::size_t n = 1; n <= count; ++n) {
      manager.Forget();
      manager.FailsCall(n, status);
      CallerBuffer buffer;
      const std::int32_t result = run(buffer);
      ASSERT_GE(manager.Calls().size(), n);
      const ManagerCall& failed = manager.Calls()[n - 1];
      SCOPED_TRACE(failed.Text() + " (call " + std::to_string(n) + ") fails with status " +
                   std::to_string(status));
      EXPECT_THAT(result, AnyOfArray(results));
      EXPECT_THAT(manager.OpenFiles(), IsEmpty());
      EXPECT_EQ(FileMessages(user.Messages()), ExpectedMessages(failed));
      EXPECT_THAT(buffer, HasNothingBehindTheRecord());
    }
  }
}

}  // namespace qlx99::tests
