#include "recordmanager/record_sql.h"

namespace recordmanager {
namespace {

std::string ColumnOf(const Key& key) { return "key" + std::to_string(key.Number()); }

// The key columns with `suffix`, each after a comma.
std::string ColumnList(const RecordLayout& layout, const char* suffix) {
  std::string list;
  for (const Key& key : layout.keys) list.append(", ").append(ColumnOf(key)).append(suffix);
  return list;
}

}  // namespace

std::string SchemaSql(const RecordLayout& layout) {
  // The data comes last, so that a long record does not push the keys to another page.
  std::string sql =
      "CREATE TABLE file(description BLOB NOT NULL, changes INTEGER NOT NULL,"
      " state BLOB NOT NULL, before BLOB NOT NULL);"
      "CREATE TABLE record(id INTEGER PRIMARY KEY, version INTEGER NOT NULL" +
      ColumnList(layout, " BLOB NOT NULL") + ", data BLOB NOT NULL);";
  for (const Key& key : layout.keys) {
    const std::string column = ColumnOf(key);
    sql.append("CREATE UNIQUE INDEX by_").append(column);
    sql.append(" ON record(").append(column).append(");");
  }
  return sql;
}

std::string ReadSql(const Key& key, Direction direction) {
  const std::string column = ColumnOf(key);
  // The index is named, or SQLite might think of sorting.
  return "SELECT id, version, " + column + ", data FROM record INDEXED BY by_" + column +
         " WHERE " + column +
         (direction == Direction::kUp ? " >= ?1 ORDER BY " + column
                                      : " < ?1 ORDER BY " + column + " DESC");
}

std::string LoadEntriesSql(const RecordLayout& layout) {
  return "SELECT version" + ColumnList(layout, "") + " FROM record WHERE id = ?1";
}

std::string InsertSql(const RecordLayout& layout) {
  std::string values = "?1, ?2, ?3";
  for (std::size_t i = 0; i < layout.keys.size(); ++i) values += ", ?";
  return "INSERT INTO record(version, id, data" + ColumnList(layout, "") + ") VALUES(" + values +
         ")";
}

std::string RewriteSql() { return "UPDATE record SET version = ?1, data = ?3 WHERE id = ?2"; }

std::string RekeySql(const RecordLayout& layout) {
  return "UPDATE record SET version = ?1, data = ?3" + ColumnList(layout, " = ?") +
         " WHERE id = ?2";
}

std::string CountValuesSql(const Key& key) {
  return "SELECT count(DISTINCT substr(" + ColumnOf(key) + ", 1, " + std::to_string(key.Length()) +
         ")) FROM record";
}

}  // namespace recordmanager
