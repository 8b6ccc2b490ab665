// Times the extraction that the database aggregates against the client-side
// extraction and against its own aggregate queries run bare.
//
//   velda-bench-aggregation client CONNECTION SQL
//   velda-bench-aggregation indb CONNECTION SQL
//   velda-bench-aggregation queries CONNECTION SQL
//
// Each mode prints "name value" lines, with the peak resident memory of the
// process in peak_kb, so the modes run in separate processes. "queries"
// sends the same aggregate queries as "indb" through a plain ODBC loop that
// fetches every value as text and keeps nothing.
#include <sql.h>
#include <sqlext.h>
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "common/LastError.h"
#include "db/Connection.h"
#include "db/QueryStatement.h"
#include "db/aggregation/AggregateSql.h"
#include "db/aggregation/DatabaseAggregation.h"
#include "db/extraction/Extraction.h"
#include "model/SymbolicMatrix.h"

namespace {

using Clock = std::chrono::steady_clock;

double secondsBetween(Clock::time_point start, Clock::time_point end) {
  return std::chrono::duration<double>(end - start).count();
}

long peakKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

int fail(const std::string& what) {
  std::fprintf(stderr, "velda-bench-aggregation: %s\n", what.c_str());
  return 1;
}

int report(const velda::ExtractionResult& result) {
  if (!result.matrix) return fail(velda::lastError());
  const long individuals = result.aggregatedIndividuals >= 0 ? result.aggregatedIndividuals
                                                             : static_cast<long>(result.matrix->individualCount());
  std::printf("seconds %.3f\npeak_kb %ld\nassertions %zu\nindividuals %ld\n",
              secondsBetween(result.startedAt, result.finishedAt), peakKilobytes(), result.matrix->assertionCount(),
              individuals);
  return 0;
}

// Runs one select and fetches every value as text; the number of rows, or
// -1 on an error.
long bareRun(const velda::Connection& connection, const std::string& sql) {
  SQLHSTMT statement = SQL_NULL_HSTMT;
  if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_STMT, connection.handle(), &statement))) return -1;
  long rows = -1;
  SQLSMALLINT columns = 0;
  if (SQL_SUCCEEDED(SQLExecDirect(statement, (SQLCHAR*)sql.c_str(), SQL_NTS)) &&
      SQL_SUCCEEDED(SQLNumResultCols(statement, &columns))) {
    rows = 0;
    char buffer[256];
    SQLLEN length = 0;
    while (SQL_SUCCEEDED(SQLFetch(statement))) {
      ++rows;
      for (SQLSMALLINT c = 1; c <= columns; ++c) SQLGetData(statement, c, SQL_C_CHAR, buffer, sizeof buffer, &length);
    }
  }
  SQLFreeHandle(SQL_HANDLE_STMT, statement);
  return rows;
}

int bareQueries(const velda::Connection& connection, const std::string& sql) {
  velda::QueryStatement description;
  if (!description.execute(connection, velda::AggregateSql::description(sql))) return fail(description.errorText());
  const size_t columns = static_cast<size_t>(description.columnCount());
  std::vector<bool> categorical;
  for (size_t c = 2; c < columns; ++c)
    categorical.push_back(description.columnKind(static_cast<int>(c)) == velda::COLUMN_CHARACTER);
  description.close();
  const velda::AggregateSql queries(sql, columns, categorical, false);
  std::vector<std::string> texts = {queries.individualCheck(), queries.groups()};
  for (size_t v = 0; v < categorical.size(); ++v)
    if (categorical[v]) texts.push_back(queries.categories(v));

  const auto start = Clock::now();
  long rows = 0;
  for (const std::string& text : texts) {
    const long fetched = bareRun(connection, text);
    if (fetched < 0) return fail("aggregate query failed: " + text);
    rows += fetched;
  }
  std::printf("seconds %.3f\npeak_kb %ld\nqueries %zu\nrows %ld\n", secondsBetween(start, Clock::now()),
              peakKilobytes(), texts.size(), rows);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return fail("usage: client|indb|queries CONNECTION SQL");
  const std::string mode = argv[1];
  std::unique_ptr<velda::Connection> connection = velda::Connection::open(argv[2]);
  if (!connection) return fail(velda::lastError());
  if (mode == "client") return report(velda::extractIndividuals(*connection, argv[3], {}));
  if (mode == "indb") return report(velda::aggregateInDatabase(*connection, argv[3], false));
  if (mode == "queries") return bareQueries(*connection, argv[3]);
  return fail("unknown mode " + mode);
}
