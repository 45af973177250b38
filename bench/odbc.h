// ODBC as a macro has it: a connection, a statement, a row's columns as texts. Its own headers stay
// out of this one: they declare some of Windows' types otherwise than platform/ does.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace bench {

class OdbcConnection {
 public:
  explicit OdbcConnection(const std::filesystem::path& database);
  ~OdbcConnection();
  OdbcConnection(const OdbcConnection&) = delete;
  OdbcConnection& operator=(const OdbcConnection&) = delete;

  void* Handle() const { return connection_; }

 private:
  void* environment_ = nullptr;
  void* connection_ = nullptr;
};

class OdbcStatement {
 public:
  explicit OdbcStatement(const OdbcConnection& connection);
  ~OdbcStatement();
  OdbcStatement(const OdbcStatement&) = delete;
  OdbcStatement& operator=(const OdbcStatement&) = delete;

  // Once, then for each row: the parameter, Execute, the columns.
  void Prepare(const std::string& sql, std::string& parameter);
  void Execute();

  // At once.
  void ExecuteText(const std::string& sql);

  // Fetches the only row and all its columns. Fails when there is none.
  void FetchRow();

 private:
  void Check(int result) const;

  void* handle_ = nullptr;
  long parameterLength_ = 0;  // ODBC's SQLLEN
  std::vector<char> column_;
};

}  // namespace bench
