// The SQL of a record file: its tables, and the statements that read and write them.
#pragma once

#include <cstdint>
#include <string>

#include "recordmanager/key.h"
#include "recordmanager/record_layout.h"

namespace recordmanager {

// Where an entry lies to those given: at or after, after, at or before, before the first; or
// between first and second.
enum class Bound : std::uint8_t { kFrom, kAfter, kUpTo, kBefore, kWithin };

inline constexpr std::size_t kBoundCount = 5;

// The tables, without records.
std::string SchemaSql(const RecordLayout& layout);

// The nearest record to the bound, at most one. Parameters: the entries. Columns: id, version,
// entry, data.
std::string ReadSql(const Key& key, Bound bound);

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
