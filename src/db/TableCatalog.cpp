#include "db/TableCatalog.h"

#include <sql.h>
#include <sqlext.h>

#include <algorithm>
#include <cstring>
#include <new>

#include "common/LastError.h"
#include "db/Connection.h"
#include "db/OdbcDiagnostic.h"
#include "db/StatementHandle.h"
#include "db/extraction/FetchedText.h"

namespace velda {

namespace {

// SQLTables' result columns that the list uses.
constexpr SQLUSMALLINT kTableNameColumn = 3;
constexpr SQLUSMALLINT kTableTypeColumn = 4;

// Reads a text column of the current row, decoded like every fetched value.
std::string columnText(SQLHSTMT stmt, SQLUSMALLINT column) {
  char buffer[256] = {};
  SQLLEN length = 0;
  if (!SQL_SUCCEEDED(SQLGetData(stmt, column, SQL_C_CHAR, buffer, sizeof buffer, &length))) return "";
  if (length == SQL_NULL_DATA) return "";
  const size_t size = strnlen(buffer, sizeof buffer - 1);
  const bool cut = length == SQL_NO_TOTAL || length > static_cast<SQLLEN>(size);
  return std::string(buffer, decodeFetchedText(buffer, size, cut));
}

int failWithDiagnostic(SQLHSTMT stmt) {
  OdbcDiagnostic diagnostic;
  if (readDiagnostic(SQL_HANDLE_STMT, stmt, diagnostic)) {
    setError("Error %s: %s", diagnostic.state.c_str(), diagnostic.message.c_str());
  } else {
    setError("Unable to list the tables of the data source");
  }
  return 0;
}

}  // namespace

int listTablesAndViews(const Connection& connection, std::vector<CatalogEntry>& entries) {
  try {
    StatementHandle stmt(connection.handle());
    if (!stmt.valid()) {
      setError("Unable to list the tables of the data source");
      return 0;
    }
    SQLCHAR types[] = "TABLE,VIEW";
    if (!SQL_SUCCEEDED(SQLTables(stmt.get(), nullptr, 0, nullptr, 0, nullptr, 0, types, SQL_NTS))) {
      return failWithDiagnostic(stmt.get());
    }
    std::vector<CatalogEntry> found;
    for (;;) {
      const SQLRETURN rc = SQLFetch(stmt.get());
      if (rc == SQL_NO_DATA) break;
      if (!SQL_SUCCEEDED(rc)) return failWithDiagnostic(stmt.get());
      found.push_back({columnText(stmt.get(), kTableNameColumn), columnText(stmt.get(), kTableTypeColumn)});
    }
    // Drivers differ in the order they list; the dialogs show types, then names, as bytes.
    std::stable_sort(found.begin(), found.end(), [](const CatalogEntry& a, const CatalogEntry& b) {
      return a.type != b.type ? a.type < b.type : a.name < b.name;
    });
    entries = std::move(found);
    return 1;
  } catch (const std::bad_alloc&) {
    setError("Memory allocation failed");
    return 0;
  }
}

}  // namespace velda
