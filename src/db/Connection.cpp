#include "db/Connection.h"

#include <sql.h>
#include <sqlext.h>
#include <strings.h>

#include <algorithm>
#include <cstring>
#include <new>

#include "common/LastError.h"
#include "db/OdbcDiagnostic.h"
#include "db/QueryStatement.h"
#include "db/extraction/FetchedText.h"

namespace velda {

namespace {

// The user may write the string as the classic "ODBC;..." form.
std::string withoutOdbcPrefix(const std::string& connectionString) {
  if (connectionString.size() >= 5 && strncasecmp(connectionString.c_str(), "ODBC;", 5) == 0) {
    return connectionString.substr(5);
  }
  return connectionString;
}

// A text that the driver reports through SQLGetInfo, empty when it cannot.
std::string infoText(const Connection& connection, SQLUSMALLINT infoType) {
  char buffer[1024] = {};
  SQLSMALLINT length = 0;
  const SQLRETURN rc = SQLGetInfo(connection.handle(), infoType, buffer, sizeof buffer, &length);
  if (!SQL_SUCCEEDED(rc)) return "";
  buffer[sizeof buffer - 1] = '\0';
  const size_t size = decodeFetchedText(buffer, strnlen(buffer, sizeof buffer - 1), false);
  return std::string(buffer, size);
}

}  // namespace

Connection::~Connection() {
  while (!statements_.empty()) statements_.back()->close();
  if (dbc_) {
    SQLDisconnect(dbc_);
    SQLFreeHandle(SQL_HANDLE_DBC, dbc_);
  }
  if (env_) SQLFreeHandle(SQL_HANDLE_ENV, env_);
}

std::unique_ptr<Connection> Connection::open(const std::string& connectionString) {
  try {
    std::unique_ptr<Connection> connection(new Connection());
    connection->connectionString_ = withoutOdbcPrefix(connectionString);
    SQLHENV env = SQL_NULL_HENV;
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &env))) {
      setError("Unable to allocate an ODBC environment");
      return nullptr;
    }
    connection->env_ = env;
    // ODBC 2 behaviour: drivers then report dates and times as 9, 10 and 11.
    SQLSetEnvAttr(env, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC2), 0);
    SQLHDBC dbc = SQL_NULL_HDBC;
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_DBC, env, &dbc))) {
      setError("Unable to allocate an ODBC connection");
      return nullptr;
    }
    const std::string& text = connection->connectionString_;
    const SQLRETURN rc =
        SQLDriverConnect(dbc, nullptr, reinterpret_cast<SQLCHAR*>(const_cast<char*>(text.c_str())),
                         static_cast<SQLSMALLINT>(text.size()), nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
    if (!SQL_SUCCEEDED(rc)) {
      OdbcDiagnostic diagnostic;
      if (readDiagnostic(SQL_HANDLE_DBC, dbc, diagnostic)) {
        setError("%s", diagnostic.message.c_str());
      } else {
        setError("Unable to connect to the data source");
      }
      SQLFreeHandle(SQL_HANDLE_DBC, dbc);
      return nullptr;
    }
    connection->dbc_ = dbc;
    return connection;
  } catch (const std::bad_alloc&) {
    setError("Memory allocation failed");
    return nullptr;
  }
}

void Connection::attach(QueryStatement& statement) const { statements_.push_back(&statement); }

void Connection::detach(QueryStatement& statement) const {
  statements_.erase(std::remove(statements_.begin(), statements_.end(), &statement), statements_.end());
}

std::string dataSourceName(const Connection& connection) {
  const std::string name = infoText(connection, SQL_DATA_SOURCE_NAME);
  return name.empty() ? "not available" : name;
}

std::string databaseName(const Connection& connection) { return infoText(connection, SQL_DATABASE_NAME); }

}  // namespace velda
