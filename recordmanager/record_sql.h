// The SQL of a record file: its tables, and the statements that read and write them.
#pragma once

#include <cstdint>
#include <string>

#include "recordmanager/key.h"
#include "recordmanager/record_layout.h"

namespace recordmanager {

// The tables, without records.
std::string SchemaSql(const RecordLayout& layout);

// The records at or after a bound, upwards, or those before it, downwards. Parameter: the bound.
// Columns: id, version, entry, data.
std::string ReadSql(const Key& key, Direction direction);

// Parameter: id. Columns: version, then every key's entry.
std::string LoadEntriesSql(const RecordLayout& layout);

// Parameters: version, id, data; then, but for the one that leaves the keys alone, every key's
// entry.
std::string InsertSql(const RecordLayout& layout);
std::string RewriteSql();
std::string RekeySql(const RecordLayout& layout);

// How many values of a key with duplicates there are.
std::string CountValuesSql(const Key& key);

}  // namespace recordmanager
