#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace velda {

class Connection;

// The three kinds of column that the symbolic model understands.
enum ColumnKind : int32_t {
  COLUMN_CHARACTER = 0,
  COLUMN_INTEGER = 1,
  COLUMN_REAL = 2,
};

enum StatementStatus : int32_t {
  STATUS_OK = 0,
  STATUS_ODBC_ERROR = 1,
  STATUS_NOT_SELECT = 2,
  STATUS_UNHANDLED_TYPE = 3,
  STATUS_NO_MEMORY = 4,  // the result's columns could not be allocated
};

// One column of a result: its name, kind and the current row's text.
struct ResultColumn {
  static constexpr size_t kValueCapacity = 254;
  static constexpr long kNullIndicator = -1;  // the driver's SQL_NULL_DATA
  std::string name;
  ColumnKind kind = COLUMN_CHARACTER;
  long indicator = 0;     // kNullIndicator: the value is NULL
  char buffer[256] = {};  // the current value, trimmed, at most 254 bytes
};

// A select statement whose values are all fetched as text.
class QueryStatement {
 public:
  QueryStatement() = default;
  ~QueryStatement();
  QueryStatement(const QueryStatement&) = delete;
  QueryStatement& operator=(const QueryStatement&) = delete;

  // Runs a select. Returns true, or false with the status set.
  [[nodiscard]] bool execute(const Connection& connection, const std::string& sql);
  // Reads the next row: true for a row, false at the end of data (status 0) or on
  // an error (status 1).
  [[nodiscard]] bool fetch();
  // Reads the next row as fetch() does but leaves the bound values as the
  // driver wrote them (see column()), for a reader that cleans them later.
  [[nodiscard]] bool fetchBound();
  // Frees the statement and its columns; closing the connection does it too.
  void close();
  // The text for the current status (empty for 0); resets the status.
  std::string errorText();

  int columnCount() const { return static_cast<int>(columns_.size()); }
  ColumnKind columnKind(int i) const { return columns_[static_cast<size_t>(i)].kind; }
  const std::string& columnName(int i) const { return columns_[static_cast<size_t>(i)].name; }
  const ResultColumn& column(int i) const { return columns_[static_cast<size_t>(i)]; }
  bool isNull(int i) const { return columns_[static_cast<size_t>(i)].indicator == ResultColumn::kNullIndicator; }
  // The current row's trimmed text of column i (0-based).
  const char* text(int i) const { return columns_[static_cast<size_t>(i)].buffer; }
  double number(int i) const;
  StatementStatus status() const { return status_; }

 private:
  [[nodiscard]] bool fail(StatementStatus status);
  [[nodiscard]] bool bindColumns();

  const Connection* connection_ = nullptr;  // not owned; set while attached to it
  void* stmt_ = nullptr;
  std::vector<ResultColumn> columns_;
  StatementStatus status_ = STATUS_OK;
};

}  // namespace velda
