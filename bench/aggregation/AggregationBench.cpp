// Times the extraction that the database aggregates against the client-side
// extraction and against its own aggregate queries run bare.
//
//   velda-bench-aggregation client CONNECTION SQL
//   velda-bench-aggregation indb CONNECTION SQL
//   velda-bench-aggregation queries CONNECTION SQL
//   velda-bench-aggregation server CONNECTION SQL
//   velda-bench-aggregation sql CONNECTION SQL
//
// Each mode prints "name value" lines: elapsed seconds, the processor time
// of the process (user and system, steadier than elapsed time on a shared
// machine) and its peak resident memory in peak_kb, so the modes run in
// separate processes. "queries" sends the same aggregate queries as "indb",
// chosen the same way, through a plain ODBC loop that fetches every value as
// text and keeps nothing. "server" runs them under EXPLAIN ANALYZE
// (PostgreSQL) and gives the execution time that the server reports for
// each and their sum: the share of the work that no client can save. "sql"
// prints their texts, one a line.
#include <sql.h>
#include <sqlext.h>
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "common/LastError.h"
#include "db/Connection.h"
#include "db/QueryStatement.h"
#include "db/aggregation/AggregateSql.h"
#include "db/aggregation/DatabaseAggregation.h"
#include "db/extraction/Extraction.h"
#include "model/CategoricalValue.h"
#include "model/SymbolicMatrix.h"

namespace {

using Clock = std::chrono::steady_clock;

double secondsBetween(Clock::time_point start, Clock::time_point end) {
  return std::chrono::duration<double>(end - start).count();
}

rusage usage() {
  rusage now{};
  getrusage(RUSAGE_SELF, &now);
  return now;
}

double cpuSeconds() {
  const rusage now = usage();
  const auto seconds = [](const timeval& t) { return static_cast<double>(t.tv_sec) + t.tv_usec / 1e6; };
  return seconds(now.ru_utime) + seconds(now.ru_stime);
}

void printCosts(double seconds) {
  std::printf("seconds %.3f\ncpu %.3f\npeak_kb %ld\n", seconds, cpuSeconds(), usage().ru_maxrss);
}

int fail(const std::string& what) {
  std::fprintf(stderr, "velda-bench-aggregation: %s\n", what.c_str());
  return 1;
}

// The matrix's size: what the memory of the in-database extraction should
// depend on, rather than the number of rows.
size_t categoryEntries(const velda::SymbolicMatrix& matrix) {
  size_t entries = 0;
  for (const velda::Assertion& assertion : matrix.assertions)
    for (size_t v = 0; v < matrix.variableCount(); ++v)
      if (matrix.variable(v).isCategorical())
        entries += static_cast<const velda::CategoricalValue&>(assertion.value(v)).entries.size();
  return entries;
}

int report(const velda::ExtractionResult& result) {
  if (!result.matrix) return fail(velda::lastError());
  const long individuals = result.aggregatedIndividuals >= 0 ? result.aggregatedIndividuals
                                                             : static_cast<long>(result.matrix->individualCount());
  printCosts(secondsBetween(result.startedAt, result.finishedAt));
  std::printf("assertions %zu\nindividuals %ld\ncategory_entries %zu\n", result.matrix->assertionCount(), individuals,
              categoryEntries(*result.matrix));
  return 0;
}

using Row = std::vector<std::string>;

// Runs one select and fetches every value as text, handing each row to the
// sink; the number of rows, or -1 on an error.
long bareRun(const velda::Connection& connection, const std::string& sql, const std::function<void(const Row&)>& sink) {
  SQLHSTMT statement = SQL_NULL_HSTMT;
  if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_STMT, connection.handle(), &statement))) return -1;
  long rows = -1;
  SQLSMALLINT columns = 0;
  if (SQL_SUCCEEDED(SQLExecDirect(statement, (SQLCHAR*)sql.c_str(), SQL_NTS)) &&
      SQL_SUCCEEDED(SQLNumResultCols(statement, &columns))) {
    rows = 0;
    Row row(static_cast<size_t>(columns));
    char buffer[256];
    SQLLEN length = 0;
    while (SQL_SUCCEEDED(SQLFetch(statement))) {
      ++rows;
      for (SQLSMALLINT c = 1; c <= columns; ++c) {
        buffer[0] = '\0';
        SQLGetData(statement, c, SQL_C_CHAR, buffer, sizeof buffer, &length);
        if (sink) row[static_cast<size_t>(c - 1)] = length == SQL_NULL_DATA ? "" : buffer;
      }
      if (sink) sink(row);
    }
  }
  SQLFreeHandle(SQL_HANDLE_STMT, statement);
  return rows;
}

// The aggregate queries of an unweighted extraction of the select, in the
// order and with the choice that the in-database extraction makes: the
// count first, then the check and the distinct forms only when individuals
// repeat. Runs the count to choose; false on an error.
bool aggregateQueries(const velda::Connection& connection, const std::string& sql, std::vector<std::string>& texts) {
  velda::QueryStatement description;
  if (!description.execute(connection, velda::AggregateSql::description(sql))) {
    velda::setError("%s", description.errorText().c_str());
    return false;
  }
  const size_t columns = static_cast<size_t>(description.columnCount());
  std::vector<bool> categorical;
  for (size_t c = 2; c < columns; ++c)
    categorical.push_back(description.columnKind(static_cast<int>(c)) == velda::COLUMN_CHARACTER);
  description.close();
  const velda::AggregateSql queries(sql, columns, categorical, false);
  Row counts;
  if (bareRun(connection, queries.individuals(), [&](const Row& row) { counts = row; }) != 1) {
    velda::setError("the count failed");
    return false;
  }
  const bool repeated = std::strtod(counts[0].c_str(), nullptr) > std::strtod(counts[1].c_str(), nullptr);
  const auto rows = repeated ? velda::AggregateSql::Rows::Repeated : velda::AggregateSql::Rows::OnePerIndividual;
  texts = {queries.individuals()};
  if (repeated) texts.push_back(queries.individualCheck());
  texts.push_back(queries.groups(rows));
  for (size_t v = 0; v < categorical.size(); ++v)
    if (categorical[v]) texts.push_back(queries.categories(v, rows));
  return true;
}

int bareQueries(const velda::Connection& connection, const std::string& sql) {
  std::vector<std::string> texts;
  if (!aggregateQueries(connection, sql, texts)) return fail(velda::lastError());
  const auto start = Clock::now();
  long rows = 0;
  for (const std::string& text : texts) {
    const long fetched = bareRun(connection, text, nullptr);
    if (fetched < 0) return fail("aggregate query failed: " + text);
    rows += fetched;
  }
  printCosts(secondsBetween(start, Clock::now()));
  std::printf("queries %zu\nrows %ld\n", texts.size(), rows);
  return 0;
}

// The execution times that PostgreSQL reports for the same queries.
int serverTimes(const velda::Connection& connection, const std::string& sql) {
  std::vector<std::string> texts;
  if (!aggregateQueries(connection, sql, texts)) return fail(velda::lastError());
  // The extraction reads through a cursor, which PostgreSQL never runs
  // in parallel; EXPLAIN would.
  if (bareRun(connection, "SET max_parallel_workers_per_gather = 0", nullptr) < 0) return fail("SET failed");
  double total = 0.0;
  for (size_t q = 0; q < texts.size(); ++q) {
    double milliseconds = 0.0;
    const long lines = bareRun(connection, "EXPLAIN (ANALYZE, TIMING OFF) " + texts[q], [&](const Row& row) {
      const char* label = "Execution Time: ";
      const size_t at = row[0].find(label);
      if (at != std::string::npos) milliseconds = std::strtod(row[0].c_str() + at + std::strlen(label), nullptr);
    });
    if (lines < 0) return fail("EXPLAIN failed: " + texts[q]);
    std::printf("query%zu_seconds %.3f\n", q + 1, milliseconds / 1000.0);
    total += milliseconds;
  }
  std::printf("seconds %.3f\n", total / 1000.0);
  return 0;
}

// The same queries' texts, one a line, to run by hand.
int printQueries(const velda::Connection& connection, const std::string& sql) {
  std::vector<std::string> texts;
  if (!aggregateQueries(connection, sql, texts)) return fail(velda::lastError());
  for (const std::string& text : texts) std::printf("%s\n", text.c_str());
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return fail("usage: client|indb|queries|server|sql CONNECTION SQL");
  const std::string mode = argv[1];
  std::unique_ptr<velda::Connection> connection = velda::Connection::open(argv[2]);
  if (!connection) return fail(velda::lastError());
  if (mode == "client") return report(velda::extractIndividuals(*connection, argv[3], {}));
  if (mode == "indb") return report(velda::aggregateInDatabase(*connection, argv[3], false));
  if (mode == "queries") return bareQueries(*connection, argv[3]);
  if (mode == "server") return serverTimes(*connection, argv[3]);
  if (mode == "sql") return printQueries(*connection, argv[3]);
  return fail("unknown mode " + mode);
}
