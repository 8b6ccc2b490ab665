#include "db/QueryStatement.h"

#include <sql.h>
#include <sqlext.h>
#include <strings.h>

#include <new>

#include "common/Decimal.h"
#include "common/Format.h"
#include "db/Connection.h"
#include "db/OdbcDiagnostic.h"
#include "db/extraction/FetchedText.h"

namespace velda {

namespace {

// The indicators are bound where the driver writes SQLLEN values.
static_assert(sizeof(ResultColumn::indicator) == sizeof(SQLLEN), "indicator must be an SQLLEN");
static_assert(ResultColumn::kNullIndicator == SQL_NULL_DATA, "NULL reads as the driver writes it");

// Buffer length given to the driver: 254 bytes of value and the terminator.
constexpr SQLLEN kBoundLength = ResultColumn::kValueCapacity + 1;

const char* const kOracleNumberHint =
    "If you are connected to an Oracle database,\n"
    "this error is due to varaibles of type 'number(p,s)'.\n"
    "Try to use 'to_char()' or 'to_number()'.";

// The kind of a column of the given SQL type; false for a type that the
// symbolic model cannot hold.
[[nodiscard]] bool kindOfSqlType(SQLSMALLINT sqlType, ColumnKind& kind) {
  switch (sqlType) {
    case SQL_CHAR:
    case SQL_VARCHAR:
    case SQL_DATE:
    case SQL_TIME:
    case SQL_TIMESTAMP: kind = COLUMN_CHARACTER; return true;
    case SQL_BIT:
    case SQL_INTEGER:
    case SQL_SMALLINT: kind = COLUMN_INTEGER; return true;
    case SQL_NUMERIC:
    case SQL_DECIMAL:
    case SQL_FLOAT:
    case SQL_REAL:
    case SQL_DOUBLE: kind = COLUMN_REAL; return true;
    default: return false;
  }
}

}  // namespace

QueryStatement::~QueryStatement() { close(); }

bool QueryStatement::fail(StatementStatus status) {
  status_ = status;
  return false;
}

bool QueryStatement::execute(const Connection& connection, const std::string& sql) {
  close();
  if (sql.size() < 6 || strncasecmp(sql.c_str(), "select", 6) != 0) return fail(STATUS_NOT_SELECT);
  try {
    connection.attach(*this);
    connection_ = &connection;
    SQLHSTMT stmt = SQL_NULL_HSTMT;
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_STMT, connection.handle(), &stmt))) return fail(STATUS_ODBC_ERROR);
    stmt_ = stmt;
    const SQLRETURN rc = SQLExecDirect(stmt, reinterpret_cast<SQLCHAR*>(const_cast<char*>(sql.c_str())),
                                       static_cast<SQLINTEGER>(sql.size()));
    if (!SQL_SUCCEEDED(rc)) return fail(STATUS_ODBC_ERROR);
    return bindColumns();
  } catch (const std::bad_alloc&) {
    columns_.clear();
    return fail(STATUS_NO_MEMORY);
  }
}

bool QueryStatement::bindColumns() {
  SQLSMALLINT count = 0;
  if (!SQL_SUCCEEDED(SQLNumResultCols(stmt_, &count))) return fail(STATUS_ODBC_ERROR);
  std::vector<ResultColumn> columns(static_cast<size_t>(count < 0 ? 0 : count));
  for (SQLUSMALLINT i = 1; i <= columns.size(); ++i) {
    ResultColumn& column = columns[i - 1];
    char name[ResultColumn::kValueCapacity + 1] = {};
    SQLSMALLINT nameLength = 0;
    SQLSMALLINT sqlType = 0;
    SQLULEN size = 0;
    SQLSMALLINT digits = 0;
    SQLSMALLINT nullable = 0;
    if (!SQL_SUCCEEDED(SQLDescribeCol(stmt_, i, reinterpret_cast<SQLCHAR*>(name), sizeof name, &nameLength, &sqlType,
                                      &size, &digits, &nullable))) {
      return fail(STATUS_ODBC_ERROR);
    }
    name[sizeof name - 1] = '\0';
    cleanBoundText(name, ResultColumn::kValueCapacity, nameLength);
    column.name = name;
    if (!kindOfSqlType(sqlType, column.kind)) return fail(STATUS_UNHANDLED_TYPE);
  }
  // Bound addresses must stay put: bind once the array has its final size.
  columns_ = std::move(columns);
  for (SQLUSMALLINT i = 1; i <= columns_.size(); ++i) {
    ResultColumn& column = columns_[i - 1];
    if (!SQL_SUCCEEDED(SQLBindCol(stmt_, i, SQL_C_CHAR, column.buffer, kBoundLength,
                                  reinterpret_cast<SQLLEN*>(&column.indicator)))) {
      columns_.clear();
      return fail(STATUS_ODBC_ERROR);
    }
  }
  return true;
}

bool QueryStatement::fetchBound() {
  if (!stmt_) return fail(STATUS_ODBC_ERROR);
  const SQLRETURN rc = SQLFetch(stmt_);
  if (rc == SQL_NO_DATA) {
    status_ = STATUS_OK;
    return false;
  }
  return SQL_SUCCEEDED(rc) || fail(STATUS_ODBC_ERROR);
}

bool QueryStatement::fetch() {
  if (!fetchBound()) return false;
  for (ResultColumn& column : columns_) {
    if (column.indicator == SQL_NULL_DATA) {
      column.buffer[0] = '\0';
      continue;
    }
    cleanBoundText(column.buffer, ResultColumn::kValueCapacity, column.indicator);
  }
  return true;
}

void QueryStatement::close() {
  if (stmt_) SQLFreeHandle(SQL_HANDLE_STMT, stmt_);
  stmt_ = nullptr;
  if (connection_) connection_->detach(*this);
  connection_ = nullptr;
  columns_.clear();
}

std::string QueryStatement::errorText() {
  const StatementStatus status = status_;
  status_ = STATUS_OK;
  switch (status) {
    case STATUS_OK: return "";
    case STATUS_NOT_SELECT: return "Error: request must be a 'select'";
    case STATUS_UNHANDLED_TYPE: return "Error: unhandled column type";
    case STATUS_NO_MEMORY: return "Memory allocation failed";
    case STATUS_ODBC_ERROR: break;
  }
  OdbcDiagnostic diagnostic;
  bool read = false;
  if (stmt_)
    read = readDiagnostic(SQL_HANDLE_STMT, stmt_, diagnostic);
  else if (connection_)
    read = readDiagnostic(SQL_HANDLE_DBC, connection_->handle(), diagnostic);
  if (!read) return "";
  if (diagnostic.state == "22005") {
    return format("Error %s: %s\n%s", diagnostic.state.c_str(), diagnostic.message.c_str(), kOracleNumberHint);
  }
  return format("Error %s: %s", diagnostic.state.c_str(), diagnostic.message.c_str());
}

double QueryStatement::number(int i) const { return parseDecimal(text(i)); }

}  // namespace velda
