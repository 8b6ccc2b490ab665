#include "db/CancellableQuery.h"

#include <sql.h>
#include <sqlext.h>

#include <chrono>
#include <future>
#include <mutex>
#include <new>
#include <vector>

#include "common/LastError.h"
#include "common/Progress.h"
#include "db/Connection.h"
#include "db/OdbcDiagnostic.h"
#include "db/QueryStatement.h"
#include "db/StatementHandle.h"
#include "db/extraction/FetchedText.h"

namespace velda {

namespace {

constexpr auto kPollPeriod = std::chrono::milliseconds(50);
constexpr size_t kValueCapacity = ResultColumn::kValueCapacity;
constexpr size_t kValueBytes = kValueCapacity + 1;
// Rows fetched by one call: the driver's cost is mostly per call, and an
// aggregate may send a million rows.
constexpr size_t kBlockRows = 256;

// Buffers bound to every column of a result, kBlockRows rows deep (one row
// deep when the driver does not fetch blocks). Must outlive the statement's
// use of them: declared before the statement handle.
class RowBlock {
 public:
  // Asks for blocks of rows; before the statement executes.
  void requestBlocks(SQLHSTMT stmt) {
    SQLULEN rows = kBlockRows;
    if (!SQL_SUCCEEDED(SQLSetStmtAttr(stmt, SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(rows), 0)) ||
        !SQL_SUCCEEDED(SQLGetStmtAttr(stmt, SQL_ATTR_ROW_ARRAY_SIZE, &rows, 0, nullptr)) || rows == 0)
      rows = 1;
    rows_ = static_cast<size_t>(rows);
  }
  // Binds the executed statement's columns; false on a driver error.
  [[nodiscard]] bool bind(SQLHSTMT stmt, size_t columns) {
    text_.assign(columns * rows_ * kValueBytes, '\0');
    lengths_.assign(columns * rows_, 0);
    if (!SQL_SUCCEEDED(SQLSetStmtAttr(stmt, SQL_ATTR_ROWS_FETCHED_PTR, &fetched_, 0))) return false;
    for (size_t c = 0; c < columns; ++c)
      if (!SQL_SUCCEEDED(SQLBindCol(stmt, static_cast<SQLUSMALLINT>(c + 1), SQL_C_CHAR, &text_[c * rows_ * kValueBytes],
                                    static_cast<SQLLEN>(kValueBytes), &lengths_[c * rows_])))
        return false;
    return true;
  }
  // The rows that the last fetch brought.
  size_t fetched() const { return rows_ == 1 ? 1 : static_cast<size_t>(fetched_); }
  // Copies value (row, column) of the block, trimmed.
  void read(size_t row, size_t column, std::optional<std::string>& value) {
    const SQLLEN length = lengths_[column * rows_ + row];
    if (length == SQL_NULL_DATA) {
      value.reset();
      return;
    }
    char* text = &text_[(column * rows_ + row) * kValueBytes];
    value.emplace(text, cleanBoundText(text, kValueCapacity, length));
  }

 private:
  size_t rows_ = 1;
  SQLULEN fetched_ = 0;
  std::vector<char> text_;       // column after column, kValueBytes a value
  std::vector<SQLLEN> lengths_;  // in the same order; SQL_NULL_DATA for NULL
};

enum class Ending { Done, DriverError, Refused, Cancelled };

// Cancel as the two threads see it. SQLCancel interrupts a statement that
// the server is still executing; on a statement that is fetching it closes
// the cursor instead, behind the back of the thread reading from it. So the
// cancel is sent only while the statement executes, the execution does not
// start once the user cancelled, and the fetching thread stops at its next
// row by itself.
class CancelGate {
 public:
  // False, without starting, when the user already cancelled.
  bool enterExecution() {
    std::lock_guard<std::mutex> lock(mutex_);
    executing_ = !cancelled_;
    return executing_;
  }
  // False when the user cancelled while the statement executed.
  bool leaveExecution() {
    std::lock_guard<std::mutex> lock(mutex_);
    executing_ = false;
    return !cancelled_;
  }
  bool cancelled() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return cancelled_;
  }
  void cancel(SQLHSTMT stmt) {
    std::lock_guard<std::mutex> lock(mutex_);
    cancelled_ = true;
    if (executing_) SQLCancel(stmt);
  }

 private:
  mutable std::mutex mutex_;
  bool executing_ = false;
  bool cancelled_ = false;
};

// Executes the statement and hands every row to the sink; runs beside the
// user-interface thread. A driver error is left in the statement.
Ending executeAndFetch(SQLHSTMT stmt, const std::string& sql, const RowSink& sink, CancelGate& gate, RowBlock& block) {
  if (!gate.enterExecution()) return Ending::Cancelled;
  block.requestBlocks(stmt);
  const SQLRETURN executed = SQLExecDirect(stmt, reinterpret_cast<SQLCHAR*>(const_cast<char*>(sql.c_str())),
                                           static_cast<SQLINTEGER>(sql.size()));
  if (!gate.leaveExecution()) return Ending::Cancelled;
  if (!SQL_SUCCEEDED(executed)) return Ending::DriverError;
  SQLSMALLINT columns = 0;
  if (!SQL_SUCCEEDED(SQLNumResultCols(stmt, &columns))) return Ending::DriverError;
  TextRow row(static_cast<size_t>(columns < 0 ? 0 : columns));
  if (!block.bind(stmt, row.size())) return Ending::DriverError;
  while (!gate.cancelled()) {
    const SQLRETURN rc = SQLFetch(stmt);
    if (rc == SQL_NO_DATA) return Ending::Done;
    if (!SQL_SUCCEEDED(rc)) return Ending::DriverError;
    for (size_t r = 0; r < block.fetched(); ++r) {
      if (r > 0 && gate.cancelled()) return Ending::Cancelled;
      for (size_t c = 0; c < row.size(); ++c) block.read(r, c, row[c]);
      if (!sink(row)) return Ending::Refused;
    }
  }
  return Ending::Cancelled;
}

void reportDriverError(SQLHSTMT stmt) {
  OdbcDiagnostic diagnostic;
  if (readDiagnostic(SQL_HANDLE_STMT, stmt, diagnostic))
    setError("Error %s: %s", diagnostic.state.c_str(), diagnostic.message.c_str());
  else
    setError("Error: the database failed without a message");
}

}  // namespace

bool runCancellableQuery(const Connection& connection, const std::string& sql, const RowSink& sink) {
  RowBlock block;
  StatementHandle statement(connection.handle());
  if (!statement.valid()) {
    setError("Memory allocation failed");
    return false;
  }
  CancelGate gate;
  std::future<Ending> done = std::async(std::launch::async, [&] {
    try {
      return executeAndFetch(statement.get(), sql, sink, gate, block);
    } catch (const std::bad_alloc&) {
      setError("Memory allocation failed");
      return Ending::Refused;
    }
  });
  while (done.wait_for(kPollPeriod) != std::future_status::ready)
    if (!gate.cancelled() && cancelRequested()) gate.cancel(statement.get());
  const Ending ending = done.get();
  if (gate.cancelled()) {
    setError("Aggregation cancelled");
    return false;
  }
  if (ending == Ending::DriverError) reportDriverError(statement.get());
  return ending == Ending::Done;
}

}  // namespace velda
