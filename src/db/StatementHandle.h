#pragma once

#include <sql.h>

namespace velda {

// Owns an ODBC statement handle for the length of one catalogue call.
class StatementHandle {
 public:
  explicit StatementHandle(void* dbc) {
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_STMT, dbc, &stmt_))) stmt_ = SQL_NULL_HSTMT;
  }
  ~StatementHandle() {
    if (stmt_ != SQL_NULL_HSTMT) SQLFreeHandle(SQL_HANDLE_STMT, stmt_);
  }
  StatementHandle(const StatementHandle&) = delete;
  StatementHandle& operator=(const StatementHandle&) = delete;

  bool valid() const { return stmt_ != SQL_NULL_HSTMT; }
  SQLHSTMT get() const { return stmt_; }

 private:
  SQLHSTMT stmt_ = SQL_NULL_HSTMT;
};

}  // namespace velda
