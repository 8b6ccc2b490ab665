#include "db/ColumnView.h"

#include <sql.h>
#include <sqlext.h>

#include <cstring>
#include <new>

#include "common/Format.h"
#include "db/Connection.h"
#include "db/OdbcDiagnostic.h"
#include "db/StatementHandle.h"
#include "db/extraction/FetchedText.h"

namespace velda {

const char* const kColumnViewHeadings[4] = {"Column name", "Type", "Precision", "Nullable"};

namespace {

// The view reads column names into a buffer of this size, terminator included.
constexpr SQLSMALLINT kNameBufferSize = 30;

const char* const kTypeNames[] = {
    "SQL_BIT",            // -7
    "SQL_TINYINT",        // -6
    "SQL_BIGINT",         // -5
    "SQL_LONGVARBINARY",  // -4
    "SQL_VARBINARY",      // -3
    "SQL_BINARY",         // -2
    "SQL_LONGVARCHAR",    // -1
    "SQL_UNKNOUN",        // 0
    "SQL_CHAR",           // 1
    "SQL_NUMERIC",        // 2
    "SQL_DECIMAL",        // 3
    "SQL_INTEGER",        // 4
    "SQL_SMALLINT",       // 5
    "SQL_FLOAT",          // 6
    "SQL_REAL",           // 7
    "SQL_DOUBLE",         // 8
    "SQL_DATETIME",       // 9
    "SQL_TIME",           // 10
    "SQL_TIMESTAMP",      // 11
    "SQL_VARCHAR",        // 12
};
constexpr int kFirstTypeCode = -7;
constexpr int kLastTypeCode = 12;

ColumnDescription describeColumn(SQLHSTMT stmt, SQLUSMALLINT number) {
  char name[kNameBufferSize] = {};
  SQLSMALLINT nameLength = 0;
  SQLSMALLINT sqlType = 0;
  SQLULEN size = 0;
  SQLSMALLINT digits = 0;
  SQLSMALLINT nullable = SQL_NULLABLE_UNKNOWN;
  SQLDescribeCol(stmt, number, reinterpret_cast<SQLCHAR*>(name), kNameBufferSize, &nameLength, &sqlType, &size, &digits,
                 &nullable);
  name[kNameBufferSize - 1] = '\0';
  const size_t length = strlen(name);
  ColumnDescription column;
  column.name.assign(name, decodeFetchedText(name, length, nameLength > static_cast<SQLSMALLINT>(length)));
  const char* typeName = sqlTypeName(sqlType);
  if (!typeName) {
    column.typeName = column.precision = column.nullable = "?";
    return column;
  }
  column.typeName = typeName;
  column.precision = format("%ld", static_cast<long>(size));
  column.nullable = nullable == SQL_NULLABLE ? "Yes" : "No";
  return column;
}

void describeFailure(ColumnView& view, SQLSMALLINT handleType, SQLHANDLE handle) {
  OdbcDiagnostic diagnostic;
  if (readDiagnostic(handleType, handle, diagnostic)) {
    view.errorCaption = "Warning";
    view.errorText = diagnostic.message;
    return;
  }
  view.errorCaption = "Error";
  view.errorText = "Unable to obtain error information.";
}

}  // namespace

std::string columnViewRequest(const std::string& table) {
  if (table.find_first_of(" -") != std::string::npos) return "SELECT * FROM [" + table + "]";
  return "SELECT * FROM " + table;
}

const char* sqlTypeName(int sqlType) {
  if (sqlType < kFirstTypeCode || sqlType > kLastTypeCode) return nullptr;
  return kTypeNames[sqlType - kFirstTypeCode];
}

ColumnView describeTableColumns(const Connection& connection, const std::string& table) {
  ColumnView view;
  try {
    StatementHandle stmt(connection.handle());
    if (!stmt.valid()) {
      describeFailure(view, SQL_HANDLE_DBC, connection.handle());
      return view;
    }
    const std::string request = columnViewRequest(table);
    const SQLRETURN rc = SQLExecDirect(stmt.get(), reinterpret_cast<SQLCHAR*>(const_cast<char*>(request.c_str())),
                                       static_cast<SQLINTEGER>(request.size()));
    SQLSMALLINT count = 0;
    if (!SQL_SUCCEEDED(rc) || !SQL_SUCCEEDED(SQLNumResultCols(stmt.get(), &count))) {
      describeFailure(view, SQL_HANDLE_STMT, stmt.get());
      return view;
    }
    for (SQLUSMALLINT i = 1; i <= count; ++i) view.columns.push_back(describeColumn(stmt.get(), i));
    view.ok = true;
    return view;
  } catch (const std::bad_alloc&) {
    ColumnView failed;
    failed.errorCaption = "Error";
    failed.errorText = "Memory allocation failed";
    return failed;
  }
}

}  // namespace velda
