// Times the extraction against a bare fetch loop over the same select.
//
//   velda-bench-extraction bare CONNECTION SQL
//   velda-bench-extraction extract CONNECTION SQL
//   velda-bench-extraction privacy CONNECTION SQL THRESHOLD
//   velda-bench-extraction exec CONNECTION STATEMENT
//   velda-bench-extraction dump CONNECTION SQL [SAMPLE]
//
// Each mode prints "name value" lines; the peak resident memory of the
// process is in peak_kb, so bare and extract run in separate processes.
// dump prints the extracted matrix in the order of its tables (individuals,
// modalities, assertions and their values' entries), so that two builds of
// the program can be checked to give exactly the same matrix.
#include <sql.h>
#include <sqlext.h>
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "common/ConsoleLog.h"
#include "common/LastError.h"
#include "db/Connection.h"
#include "db/QueryStatement.h"
#include "db/extraction/Extraction.h"
#include "model/CategoricalValue.h"
#include "model/CategoricalVariable.h"
#include "model/SymbolicMatrix.h"
#include "ops/PrivacyThreshold.h"

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

long peakKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

// Processor time of the whole process (user and system): the machine may be
// shared, so this is the fairer measure of work.
double cpuSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& t) { return static_cast<double>(t.tv_sec) + t.tv_usec / 1e6; };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

int fail(const std::string& what) {
  std::fprintf(stderr, "velda-bench-extraction: %s\n", what.c_str());
  return 1;
}

// Fetches every row as text, as the extraction does, and touches each value.
int bareLoop(const velda::Connection& connection, const std::string& sql) {
  const auto start = Clock::now();
  velda::QueryStatement statement;
  if (!statement.execute(connection, sql)) return fail(statement.errorText());
  long rows = 0;
  unsigned long checksum = 0;
  while (statement.fetch()) {
    ++rows;
    for (int i = 0; i < statement.columnCount(); ++i)
      if (!statement.isNull(i)) checksum += static_cast<unsigned char>(statement.text(i)[0]);
  }
  if (statement.status() != velda::STATUS_OK) return fail(statement.errorText());
  statement.close();
  std::printf("rows %ld\nseconds %.3f\ncpu_seconds %.3f\npeak_kb %ld\nchecksum %lu\n", rows, secondsSince(start),
              cpuSeconds(), peakKilobytes(), checksum);
  return 0;
}

int extraction(const velda::Connection& connection, const std::string& sql, int threshold) {
  velda::ExtractionResult result = velda::extractIndividuals(connection, sql, {});
  if (!result.matrix) return fail(velda::lastError());
  const double seconds = std::chrono::duration<double>(result.finishedAt - result.startedAt).count();
  velda::SymbolicMatrix& matrix = *result.matrix;
  std::printf("rows %ld\nseconds %.3f\ncpu_seconds %.3f\npeak_kb %ld\nindividuals %zu\nassertions %zu\n",
              matrix.rowsRead, seconds, cpuSeconds(), peakKilobytes(), matrix.individualCount(),
              matrix.assertionCount());
  if (threshold <= 0) return 0;
  velda::ConsoleLog console;
  const auto start = Clock::now();
  static_cast<void>(velda::ApplyPrivacyThreshold(matrix, console, threshold));
  std::printf("privacy_seconds %.3f\nassertions_kept %zu\nindividuals_kept %zu\n", secondsSince(start),
              matrix.assertionCount(), matrix.individualCount());
  return 0;
}

int dump(const velda::Connection& connection, const std::string& sql, int sampleSize) {
  velda::ExtractionOptions options;
  options.sampleSize = sampleSize;
  velda::ExtractionResult result = velda::extractIndividuals(connection, sql, options);
  if (!result.matrix) return fail(velda::lastError());
  velda::SymbolicMatrix& matrix = *result.matrix;
  std::printf("individuals %zu buckets %zu\n", matrix.individualCount(), matrix.individuals.bucketCount());
  for (const velda::Individual& individual : matrix.individuals) {
    std::printf("%s %g", individual.id.c_str(), individual.weight);
    individual.forEachAssertion([](const velda::Assertion* a) { std::printf(" %d", a->number); });
    for (size_t v = 0; v < matrix.cellCount(); ++v) std::printf(" %s", velda::cellText(individual.cells[v]).c_str());
    std::printf("\n");
  }
  for (size_t v = 0; v < matrix.variableCount(); ++v) {
    if (!matrix.variable(v).isCategorical()) continue;
    const auto& variable = static_cast<const velda::CategoricalVariable&>(matrix.variable(v));
    std::printf("variable %s buckets %zu:", variable.name.c_str(), variable.modalities.bucketCount());
    for (const velda::Modality& m : variable.modalities) std::printf(" %s=%d", m.name.c_str(), m.index);
    std::printf("\n");
  }
  std::printf("assertions %zu buckets %zu\n", matrix.assertionCount(), matrix.assertions.bucketCount());
  for (const velda::Assertion& a : matrix.assertions) {
    std::printf("%s %d %d members", a.id.c_str(), a.number, a.memberCount);
    for (const velda::Individual* m : a.members) std::printf(" %s", m->id.c_str());
    std::printf("\n");
    for (size_t v = 0; v < a.values.size(); ++v) {
      const velda::SymbolicValue& value = a.value(v);
      std::printf("  %.17g %.17g %.17g", value.totalWeight, value.nullWeight, value.naWeight);
      if (value.variable().isCategorical()) {
        const auto& entries = static_cast<const velda::CategoricalValue&>(value).entries;
        std::printf(" buckets %zu:", entries.bucketCount());
        for (const velda::ValueEntry& e : entries) std::printf(" %d=%.17g", e.index, e.weight);
      }
      std::printf("\n");
    }
  }
  return 0;
}

// Runs a statement that is not a select (building the benchmark's table).
int execute(const velda::Connection& connection, const std::string& sql) {
  SQLHSTMT statement = SQL_NULL_HSTMT;
  if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_STMT, connection.handle(), &statement)))
    return fail("cannot allocate a statement");
  const SQLRETURN rc = SQLExecDirect(statement, (SQLCHAR*)sql.c_str(), SQL_NTS);
  std::string message;
  if (!SQL_SUCCEEDED(rc) && rc != SQL_NO_DATA) {
    SQLCHAR state[6] = {};
    SQLCHAR text[1024] = {};
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    SQLGetDiagRec(SQL_HANDLE_STMT, statement, 1, state, &native, text, sizeof text, &length);
    message = std::string(reinterpret_cast<char*>(state)) + ": " + reinterpret_cast<char*>(text);
  }
  SQLFreeHandle(SQL_HANDLE_STMT, statement);
  return message.empty() ? 0 : fail(message);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) return fail("usage: bare|extract|privacy|exec CONNECTION SQL [THRESHOLD]");
  const std::string mode = argv[1];
  std::unique_ptr<velda::Connection> connection = velda::Connection::open(argv[2]);
  if (!connection) return fail(velda::lastError());
  if (mode == "bare") return bareLoop(*connection, argv[3]);
  if (mode == "extract") return extraction(*connection, argv[3], 0);
  if (mode == "privacy" && argc > 4) return extraction(*connection, argv[3], std::atoi(argv[4]));
  if (mode == "exec") return execute(*connection, argv[3]);
  if (mode == "dump") return dump(*connection, argv[3], argc > 4 ? std::atoi(argv[4]) : 0);
  return fail("unknown mode " + mode);
}
