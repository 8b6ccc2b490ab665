#include "db/CancellableQuery.h"

#include <sql.h>
#include <sqlext.h>

#include <chrono>
#include <cstring>
#include <future>
#include <mutex>
#include <new>

#include "common/LastError.h"
#include "common/Progress.h"
#include "db/Connection.h"
#include "db/OdbcDiagnostic.h"
#include "db/StatementHandle.h"
#include "db/extraction/FetchedText.h"

namespace velda {

namespace {

constexpr auto kPollPeriod = std::chrono::milliseconds(50);
constexpr size_t kValueCapacity = 254;

// Reads column i of the current row as text; false on a driver error.
[[nodiscard]] bool readValue(SQLHSTMT stmt, SQLUSMALLINT column, std::optional<std::string>& value) {
  char buffer[kValueCapacity + 1] = {};
  SQLLEN length = 0;
  const SQLRETURN rc = SQLGetData(stmt, column, SQL_C_CHAR, buffer, sizeof buffer, &length);
  if (!SQL_SUCCEEDED(rc)) return false;
  if (length == SQL_NULL_DATA) {
    value.reset();
    return true;
  }
  const size_t kept = strnlen(buffer, kValueCapacity);
  const bool cut = length == SQL_NO_TOTAL || length > static_cast<SQLLEN>(kept);
  value.emplace(buffer, trimFetchedText(buffer, decodeFetchedText(buffer, kept, cut)));
  return true;
}

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
Ending executeAndFetch(SQLHSTMT stmt, const std::string& sql, const RowSink& sink, CancelGate& gate) {
  if (!gate.enterExecution()) return Ending::Cancelled;
  const SQLRETURN executed = SQLExecDirect(stmt, reinterpret_cast<SQLCHAR*>(const_cast<char*>(sql.c_str())),
                                           static_cast<SQLINTEGER>(sql.size()));
  if (!gate.leaveExecution()) return Ending::Cancelled;
  if (!SQL_SUCCEEDED(executed)) return Ending::DriverError;
  SQLSMALLINT columns = 0;
  if (!SQL_SUCCEEDED(SQLNumResultCols(stmt, &columns))) return Ending::DriverError;
  TextRow row(static_cast<size_t>(columns < 0 ? 0 : columns));
  while (!gate.cancelled()) {
    const SQLRETURN rc = SQLFetch(stmt);
    if (rc == SQL_NO_DATA) return Ending::Done;
    if (!SQL_SUCCEEDED(rc)) return Ending::DriverError;
    for (size_t c = 0; c < row.size(); ++c)
      if (!readValue(stmt, static_cast<SQLUSMALLINT>(c + 1), row[c])) return Ending::DriverError;
    if (!sink(row)) return Ending::Refused;
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
  StatementHandle statement(connection.handle());
  if (!statement.valid()) {
    setError("Memory allocation failed");
    return false;
  }
  CancelGate gate;
  std::future<Ending> done = std::async(std::launch::async, [&] {
    try {
      return executeAndFetch(statement.get(), sql, sink, gate);
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
