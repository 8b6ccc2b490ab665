#include "db/DatabaseAggregation.h"

#include <strings.h>

#include <algorithm>
#include <new>
#include <set>
#include <vector>

#include "common/Decimal.h"
#include "common/LastError.h"
#include "common/Progress.h"
#include "db/AggregateSql.h"
#include "db/CancellableQuery.h"
#include "db/ExtractionBuilder.h"
#include "db/QueryStatement.h"
#include "model/SymbolicMatrix.h"

namespace velda {

namespace {

const char* textOf(const std::optional<std::string>& value) { return value ? value->c_str() : nullptr; }
double numberOf(const std::optional<std::string>& value) { return value ? parseDecimal(value->c_str()) : 0.0; }

// The query's columns, read from a form of it that returns no row. The
// statement layer refuses anything but a select before sending it, and
// columns of a type that the model cannot hold, with its own messages.
bool describeColumns(const Connection& connection, const std::string& sql, std::vector<ExtractionColumn>& columns) {
  QueryStatement statement;
  const bool isSelect = sql.size() >= 6 && strncasecmp(sql.c_str(), "select", 6) == 0;
  if (!statement.execute(connection, isSelect ? AggregateSql::description(sql) : sql)) {
    setError("%s", statement.errorText().c_str());
    return false;
  }
  columns.resize(static_cast<size_t>(statement.columnCount()));
  for (int i = 0; i < statement.columnCount(); ++i)
    columns[static_cast<size_t>(i)] = {statement.columnName(i), statement.columnKind(i)};
  return true;
}

class Aggregation {
 public:
  Aggregation(const Connection& connection, SymbolicMatrix& matrix, const AggregateSql& sql)
      : connection_(connection), matrix_(matrix), sql_(sql) {}

  // Each step returns false with the last-error text set when the
  // extraction must end. The check gives the number of distinct individuals.
  bool checkIndividuals(long& individuals);
  bool readGroups();
  bool readCategories(size_t variable);

 private:
  // Runs one aggregate whose rows have the given number of columns.
  bool run(const std::string& sql, size_t width, std::vector<TextRow>& rows);
  Assertion* groupNamed(const std::optional<std::string>& name);
  bool addCell(Assertion& assertion, size_t variable, const char* text, double weight);

  const Connection& connection_;
  SymbolicMatrix& matrix_;
  const AggregateSql& sql_;
};

bool Aggregation::run(const std::string& sql, size_t width, std::vector<TextRow>& rows) {
  if (!runCancellableQuery(connection_, sql, rows)) return false;
  for (const TextRow& row : rows) {
    if (row.size() == width) continue;
    setError("Error: the database answered an aggregate with %zu columns instead of %zu", row.size(), width);
    return false;
  }
  return true;
}

bool Aggregation::checkIndividuals(long& individuals) {
  progressLine2("Checking the individuals");
  std::vector<TextRow> rows;
  const size_t variables = matrix_.cellCount;
  const size_t weightChecks = matrix_.weightColumn.empty() ? 0 : 2;
  if (!run(sql_.individualCheck(), 1 + variables + weightChecks, rows)) return false;
  if (rows.size() != 1) {
    setError("Error: the individuals could not be counted");
    return false;
  }
  const TextRow& row = rows.front();
  for (size_t v = 0; v < variables; ++v) {
    if (!row[v + 1]) continue;
    setError("Value of column '%s' differ from previous definition of '%s'", matrix_.variable(v).name.c_str(),
             row[v + 1]->c_str());
    return false;
  }
  if (weightChecks > 0) {
    if (row[variables + 1]) {
      setError("Ponderation of individual '%s' is null or negative", row[variables + 1]->c_str());
      return false;
    }
    if (row[variables + 2]) {
      setError("Ponderation differ from previous definition of '%s'", row[variables + 2]->c_str());
      return false;
    }
  }
  individuals = static_cast<long>(numberOf(row.front()));
  return true;
}

// The assertion of a group met by the group query; values that differ only
// in blanks at their ends name the same group, as fetched texts are trimmed.
Assertion* Aggregation::groupNamed(const std::optional<std::string>& name) {
  if (!name) return nullptr;
  if (Assertion* found = matrix_.findAssertion(*name)) return found;
  return &matrix_.createAssertion(*name);
}

bool Aggregation::addCell(Assertion& assertion, size_t variable, const char* text, double weight) {
  CellValue cell;
  if (matrix_.variable(variable).addCell(text, cell) && assertion.value(variable).addCell(cell, weight)) return true;
  setError("Memory allocation failed");
  return false;
}

bool Aggregation::readGroups() {
  progressLine2("Counting the individuals of each group and the bounds of the numbers");
  std::vector<TextRow> rows;
  if (!run(sql_.groups(), 2 + 4 * matrix_.quantitativeCount(), rows)) return false;
  std::sort(rows.begin(), rows.end(), [](const TextRow& a, const TextRow& b) { return a[0] < b[0]; });
  for (const TextRow& row : rows) {
    Assertion* assertion = groupNamed(row[0]);
    if (!assertion) continue;
    assertion->memberCount += static_cast<int32_t>(numberOf(row[1]));
    size_t field = 2;
    for (size_t v = 0; v < matrix_.cellCount; ++v) {
      if (matrix_.variable(v).isCategorical()) continue;
      const double numbered = numberOf(row[field + 2]);
      const double missing = numberOf(row[field + 3]);
      if ((row[field] && !addCell(*assertion, v, textOf(row[field]), numbered)) ||
          (row[field + 1] && !addCell(*assertion, v, textOf(row[field + 1]), 0.0)) ||
          (missing > 0.0 && !addCell(*assertion, v, nullptr, missing)))
        return false;
      field += 4;
    }
  }
  return true;
}

bool Aggregation::readCategories(size_t variable) {
  progressLine2("Weighing the categories of '%s'", matrix_.variable(variable).name.c_str());
  std::vector<TextRow> rows;
  if (!run(sql_.categories(variable), 3, rows)) return false;
  // The categories enter the variable in ascending byte order of their
  // names, whatever the order of the rows.
  std::set<std::string> names;
  for (const TextRow& row : rows)
    if (row[1]) names.insert(*row[1]);
  for (const std::string& name : names) {
    CellValue cell;
    if (matrix_.variable(variable).addCell(name.c_str(), cell)) continue;
    setError("Memory allocation failed");
    return false;
  }
  for (const TextRow& row : rows) {
    if (!row[0]) continue;
    Assertion* assertion = matrix_.findAssertion(*row[0]);
    if (!assertion) {
      setError("Error: group '%s' appeared while the database was aggregating", row[0]->c_str());
      return false;
    }
    if (!addCell(*assertion, variable, textOf(row[1]), numberOf(row[2]))) return false;
  }
  return true;
}

std::unique_ptr<SymbolicMatrix> aggregate(const Connection& connection, const std::string& sql, bool weighted,
                                          long& individuals) {
  progressLine1("Creation of variables...");
  std::vector<ExtractionColumn> columns;
  if (!describeColumns(connection, sql, columns)) return nullptr;
  ExtractionOptions options;
  options.lastColumnIsWeight = weighted;
  std::unique_ptr<SymbolicMatrix> matrix = ExtractionBuilder::matrixFor(columns, options);
  if (!matrix) return nullptr;

  std::vector<bool> categorical(matrix->cellCount);
  for (size_t v = 0; v < categorical.size(); ++v) categorical[v] = matrix->variable(v).isCategorical();
  const AggregateSql queries(sql, columns.size(), categorical, weighted);
  Aggregation aggregation(connection, *matrix, queries);

  progressLine1("Aggregating in the database...");
  progressEnableCancel(true);
  bool ok = aggregation.checkIndividuals(individuals) && aggregation.readGroups();
  for (size_t v = 0; ok && v < categorical.size(); ++v)
    if (categorical[v]) ok = aggregation.readCategories(v);
  progressEnableCancel(false);
  if (!ok) return nullptr;

  progressLine1("Updating data...");
  progressLine2("%s", "");
  if (!matrix->finish(false) || !matrix->indexAssertions()) {
    setError("Memory allocation failed");
    return nullptr;
  }
  return matrix;
}

}  // namespace

ExtractionResult aggregateInDatabase(const Connection& connection, const std::string& sql, bool lastColumnIsWeight) {
  ExtractionResult result;
  result.startedAt = std::chrono::steady_clock::now();
  long individuals = -1;
  try {
    result.matrix = aggregate(connection, sql, lastColumnIsWeight, individuals);
  } catch (const std::bad_alloc&) {
    setError("Memory allocation failed");
    result.matrix.reset();
  }
  if (result.matrix) result.aggregatedIndividuals = individuals;
  result.finishedAt = std::chrono::steady_clock::now();
  return result;
}

}  // namespace velda
