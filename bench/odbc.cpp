#include "bench/odbc.h"

#include <sql.h>
#include <sqlext.h>

#include <stdexcept>

namespace bench {
namespace {

// By its path, so that no data source has to be set up; Debian: libsqliteodbc.
constexpr const char* kDriver = "/usr/lib/x86_64-linux-gnu/odbc/libsqlite3odbc.so";
constexpr std::size_t kLongestColumn = 1024;

SQLCHAR* Text(const std::string& text) {
  return reinterpret_cast<SQLCHAR*>(const_cast<char*>(text.c_str()));
}

void CheckConnected(SQLRETURN result) {
  if (!SQL_SUCCEEDED(result)) throw std::runtime_error("no ODBC connection (libsqliteodbc)");
}

}  // namespace

OdbcConnection::OdbcConnection(const std::filesystem::path& database) {
  CheckConnected(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment_));
  CheckConnected(SQLSetEnvAttr(environment_, SQL_ATTR_ODBC_VERSION,
                               reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0));
  CheckConnected(SQLAllocHandle(SQL_HANDLE_DBC, environment_, &connection_));
  const std::string target = std::string("Driver=") + kDriver + ";Database=" + database.string();
  CheckConnected(SQLDriverConnect(connection_, nullptr, Text(target), SQL_NTS, nullptr, 0, nullptr,
                                  SQL_DRIVER_NOPROMPT));
}

OdbcConnection::~OdbcConnection() {
  SQLDisconnect(connection_);
  SQLFreeHandle(SQL_HANDLE_DBC, connection_);
  SQLFreeHandle(SQL_HANDLE_ENV, environment_);
}

OdbcStatement::OdbcStatement(const OdbcConnection& connection) : column_(kLongestColumn) {
  CheckConnected(SQLAllocHandle(SQL_HANDLE_STMT, connection.Handle(), &handle_));
}

OdbcStatement::~OdbcStatement() { SQLFreeHandle(SQL_HANDLE_STMT, handle_); }

void OdbcStatement::Prepare(const std::string& sql, std::string& parameter) {
  parameterLength_ = SQL_NTS;
  Check(SQLPrepare(handle_, Text(sql), SQL_NTS));
  Check(SQLBindParameter(handle_, 1, SQL_PARAM_INPUT, SQL_C_CHAR, SQL_VARCHAR, 10, 0,
                         parameter.data(), 0, &parameterLength_));
}

void OdbcStatement::Execute() { Check(SQLExecute(handle_)); }

void OdbcStatement::ExecuteText(const std::string& sql) {
  Check(SQLExecDirect(handle_, Text(sql), SQL_NTS));
}

void OdbcStatement::FetchRow() {
  Check(SQLFetch(handle_));
  SQLSMALLINT columns = 0;
  Check(SQLNumResultCols(handle_, &columns));
  for (SQLUSMALLINT i = 1; i <= columns; ++i) {
    SQLLEN length = 0;
    Check(SQLGetData(handle_, i, SQL_C_CHAR, column_.data(), static_cast<SQLLEN>(column_.size()),
                     &length));
  }
  Check(SQLFreeStmt(handle_, SQL_CLOSE));
}

void OdbcStatement::Check(int result) const {
  if (SQL_SUCCEEDED(result)) return;
  std::string message(256, '\0');
  SQLGetDiagRec(SQL_HANDLE_STMT, handle_, 1, nullptr, nullptr, Text(message),
                static_cast<SQLSMALLINT>(message.size()), nullptr);
  throw std::runtime_error("ODBC: " + message);
}

}  // namespace bench
