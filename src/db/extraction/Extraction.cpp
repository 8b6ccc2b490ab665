#include "db/extraction/Extraction.h"

#include <new>
#include <vector>

#include "common/LastError.h"
#include "common/Progress.h"
#include "db/FetchAhead.h"
#include "db/QueryStatement.h"

namespace velda {

namespace {

constexpr long kProgressStep = 100;

std::vector<ExtractionColumn> columnsOf(const QueryStatement& statement) {
  std::vector<ExtractionColumn> columns(static_cast<size_t>(statement.columnCount()));
  for (int i = 0; i < statement.columnCount(); ++i)
    columns[static_cast<size_t>(i)] = {statement.columnName(i), statement.columnKind(i)};
  return columns;
}

void reportStatementError(QueryStatement& statement) { setError("%s", statement.errorText().c_str()); }

// Reads every row into the builder, the driver fetching the next rows
// meanwhile. Returns the number of rows read, or -1 when the extraction must
// end (last-error text set).
long readRows(QueryStatement& statement, ExtractionBuilder& builder, bool& stopped) {
  std::vector<const char*> texts(static_cast<size_t>(statement.columnCount()));
  FetchAhead fetched(statement);
  long rows = 0;
  for (;;) {
    if (cancelRequested()) {
      stopped = true;
      return rows;
    }
    if (!fetched.next(texts.data())) break;
    ++rows;
    if (rows % kProgressStep == 0) progressLine2("Individual %ld", rows);
    if (!builder.processRow(texts.data())) return -1;
  }
  if (statement.status() != STATUS_OK) {
    reportStatementError(statement);
    return -1;
  }
  return rows;
}

std::unique_ptr<SymbolicMatrix> extract(const Connection& connection, const std::string& sql,
                                        const ExtractionOptions& options, bool& stopped) {
  QueryStatement statement;
  progressLine1("Creation of variables...");
  if (!statement.execute(connection, sql)) {
    reportStatementError(statement);
    return nullptr;
  }
  std::unique_ptr<ExtractionBuilder> builder = ExtractionBuilder::prepare(columnsOf(statement), options);
  if (!builder) return nullptr;

  progressLine1("Extracting individuals...");
  progressLine2("Individual 1");
  progressEnableCancel(true);
  const long rows = readRows(statement, *builder, stopped);
  progressEnableCancel(false);
  statement.close();
  if (rows < 0) return nullptr;

  progressLine1("Updating data...");
  progressLine2("%s", "");
  return builder->finish(rows);
}

}  // namespace

ExtractionResult extractIndividuals(const Connection& connection, const std::string& sql,
                                    const ExtractionOptions& options) {
  ExtractionResult result;
  result.startedAt = std::chrono::steady_clock::now();
  try {
    result.matrix = extract(connection, sql, options, result.stopped);
  } catch (const std::bad_alloc&) {
    setError("Memory allocation failed");
    result.matrix.reset();
  }
  result.finishedAt = std::chrono::steady_clock::now();
  return result;
}

}  // namespace velda
