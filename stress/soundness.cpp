#include <sqlite3.h>

#include "recordmanager/file_format.h"
#include "stress/store.h"

namespace stress {
namespace {

using recordmanager::Connection;
using recordmanager::Entry;
using recordmanager::Key;
using recordmanager::RecordLayout;
using recordmanager::Statement;

// The number of the first record whose keys are not those of its bytes; 0 when there is none.
int FindStrayKey(Connection& connection, const RecordLayout& layout) {
  std::string columns;
  for (const Key& key : layout.keys) columns += ", key" + std::to_string(key.Number());
  Statement records;
  if (connection.Prepare("SELECT id, data" + columns + " FROM record", records) != 0) return -1;
  while (records.Step() == SQLITE_ROW) {
    const auto data = records.Bytes(1);
    if (data.size() != layout.RecordLength()) return static_cast<int>(records.Integer(0));
    int column = 2;
    for (const Key& key : layout.keys) {
      const auto bytes = records.Bytes(column++);
      const Entry entry = Entry::From(bytes.data(), bytes.size());
      if (!key.Matches(entry, key.In(data.data()))) return static_cast<int>(records.Integer(0));
    }
  }
  return 0;
}

}  // namespace

void ExpectUndamaged(const std::filesystem::path& file) {
  const std::string name = file.string();
  Connection connection;
  RecordLayout layout;
  const int status = recordmanager::OpenDatabase(name, connection, layout);
  if (status != btrieve::kSuccess) throw Refusal("opening " + name, status);
  std::string verdict;
  connection.QueryText("PRAGMA integrity_check", verdict);
  if (verdict != "ok") throw Fault(name + ": " + verdict);
  const int stray = FindStrayKey(connection, layout);
  if (stray != 0) throw Fault(name + ": keys of record " + std::to_string(stray));
}

void UseRollbackJournal(const std::filesystem::path& file) {
  Connection connection;
  if (connection.Open(file.string(), Connection::Way::kExisting) != btrieve::kSuccess ||
      connection.Execute("PRAGMA journal_mode = TRUNCATE") != btrieve::kSuccess) {
    throw Fault(file.string() + " stays as it is");
  }
}

}  // namespace stress
