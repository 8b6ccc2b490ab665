#include "support/PgDatabase.h"

#include <gtest/gtest.h>
#include <sql.h>
#include <sqlext.h>
#include <unistd.h>

#include <strings.h>
#include <atomic>
#include <cstdlib>

namespace velda::test {

namespace {

// Runs SQL on a fresh connection made from the connection string; the empty
// text on success, else the driver's message.
std::string runOnce(const std::string& connection, const std::string& sql) {
  SQLHENV env = SQL_NULL_HENV;
  SQLHDBC dbc = SQL_NULL_HDBC;
  SQLHSTMT stmt = SQL_NULL_HSTMT;
  std::string message;
  SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &env);
  SQLSetEnvAttr(env, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
  SQLAllocHandle(SQL_HANDLE_DBC, env, &dbc);
  SQLRETURN rc =
      SQLDriverConnect(dbc, nullptr, (SQLCHAR*)connection.c_str(), SQL_NTS, nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
  SQLSMALLINT handleType = SQL_HANDLE_DBC;
  SQLHANDLE failed = dbc;
  if (SQL_SUCCEEDED(rc)) {
    SQLAllocHandle(SQL_HANDLE_STMT, dbc, &stmt);
    rc = SQLExecDirect(stmt, (SQLCHAR*)sql.c_str(), SQL_NTS);
    handleType = SQL_HANDLE_STMT;
    failed = stmt;
  }
  if (!SQL_SUCCEEDED(rc) && rc != SQL_NO_DATA) {
    SQLCHAR state[6] = {};
    SQLCHAR text[1024] = {};
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    SQLGetDiagRec(handleType, failed, 1, state, &native, text, sizeof text, &length);
    message = std::string("Error ") + (const char*)state + ": " + (const char*)text;
  }
  if (stmt != SQL_NULL_HSTMT) SQLFreeHandle(SQL_HANDLE_STMT, stmt);
  if (handleType == SQL_HANDLE_STMT) SQLDisconnect(dbc);
  SQLFreeHandle(SQL_HANDLE_DBC, dbc);
  SQLFreeHandle(SQL_HANDLE_ENV, env);
  return message;
}

// The connection string with its Database= entry naming another database.
std::string withDatabase(const std::string& connection, const std::string& database) {
  std::string result;
  size_t start = 0;
  while (start < connection.size()) {
    size_t end = connection.find(';', start);
    if (end == std::string::npos) end = connection.size();
    const std::string entry = connection.substr(start, end - start);
    if (!entry.empty() && strncasecmp(entry.c_str(), "Database=", 9) != 0) result += entry + ";";
    start = end + 1;
  }
  return result + "Database=" + database;
}

}  // namespace

PgDatabase::PgDatabase() {
  const char* server = std::getenv("VELDA_PG_CONN");
  if (!server || !*server) {
    ADD_FAILURE() << "VELDA_PG_CONN is not set: run this test under scripts/with-postgres.sh";
    return;
  }
  static std::atomic<int> counter{0};
  serverConnection_ = server;
  name_ = "velda_test_" + std::to_string(getpid()) + "_" + std::to_string(++counter);
  const std::string message = runOnce(serverConnection_, "CREATE DATABASE " + name_);
  if (!message.empty()) {
    ADD_FAILURE() << "cannot create a PostgreSQL database: " << message;
    return;
  }
  connectionString_ = withDatabase(serverConnection_, name_);
  available_ = true;
}

PgDatabase::~PgDatabase() {
  if (available_) runOnce(serverConnection_, "DROP DATABASE IF EXISTS " + name_ + " WITH (FORCE)");
}

bool PgDatabase::run(const std::string& sql) {
  if (!available_) return false;
  const std::string message = runOnce(connectionString_, sql);
  if (message.empty()) return true;
  ADD_FAILURE() << message << "\nwhile running:\n" << sql;
  return false;
}

}  // namespace velda::test
