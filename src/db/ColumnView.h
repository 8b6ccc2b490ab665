#pragma once

#include <string>
#include <vector>

namespace velda {

class Connection;

// One line of the query view, the dialog that lists a table's columns.
struct ColumnDescription {
  std::string name;       // at most 29 bytes: the view reads names into 30 bytes
  std::string typeName;   // "SQL_VARCHAR", ...; "?" for a type outside the table
  std::string precision;  // the column size printed with "%ld"; "?" likewise
  std::string nullable;   // "Yes" only for SQL_NULLABLE, else "No"; "?" likewise
};

// The four headings of the query view's list.
extern const char* const kColumnViewHeadings[4];

// What the query view shows for one table. On failure, the message box's
// caption is "Warning" with the driver's message, or "Error" with "Unable to
// obtain error information." when the driver gave none.
struct ColumnView {
  bool ok = false;
  std::vector<ColumnDescription> columns;
  std::string errorCaption;
  std::string errorText;
};

// The request that the view runs: "SELECT * FROM " and the table's name,
// in square brackets when the name holds a blank or a hyphen.
std::string columnViewRequest(const std::string& table);

// The view's name of an SQL type code, or null for a code outside its table.
const char* sqlTypeName(int sqlType);

// Runs the view's request and describes every result column.
ColumnView describeTableColumns(const Connection& connection, const std::string& table);

}  // namespace velda
