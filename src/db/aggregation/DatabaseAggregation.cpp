#include "db/aggregation/DatabaseAggregation.h"

#include <strings.h>

#include <algorithm>
#include <new>
#include <unordered_map>
#include <vector>

#include "common/Decimal.h"
#include "common/LastError.h"
#include "common/Progress.h"
#include "db/CancellableQuery.h"
#include "db/QueryStatement.h"
#include "db/aggregation/AggregateSql.h"
#include "db/extraction/ExtractionBuilder.h"
#include "model/SymbolicMatrix.h"

namespace velda {

namespace {

const char* textOf(const std::optional<std::string>& value) { return value ? value->c_str() : nullptr; }
double numberOf(const std::optional<std::string>& value) { return value ? parseDecimal(value->c_str()) : 0.0; }

// The query's columns, read from a form of it that returns no row. The
// statement layer refuses anything but a select before sending it, and
// columns of a type that the model cannot hold, with its own messages.
[[nodiscard]] bool describeColumns(const Connection& connection, const std::string& sql,
                                   std::vector<ExtractionColumn>& columns) {
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
  // extraction must end. The check gives the number of distinct individuals
  // and must come first.
  [[nodiscard]] bool checkIndividuals(long& individuals);
  [[nodiscard]] bool readGroups();
  [[nodiscard]] bool readCategories(size_t variable);
  // Numbers the assertions in ascending byte order of their names.
  void numberGroups();

 private:
  // Runs one aggregate whose rows have the given number of columns.
  [[nodiscard]] bool run(const std::string& sql, size_t width, const RowSink& sink);
  [[nodiscard]] bool runForOneRow(const std::string& sql, size_t width, TextRow& row);
  Assertion& groupNamed(const std::string& name);
  Assertion* knownGroup(const std::string& name);
  [[nodiscard]] bool addCell(Assertion& assertion, size_t variable, const char* text, double weight);

  const Connection& connection_;
  SymbolicMatrix& matrix_;
  const AggregateSql& sql_;
  // Whether some individual has several rows, known after the count.
  AggregateSql::Rows rows_ = AggregateSql::Rows::Repeated;
  // The groups by name: the matrix's table keeps the few buckets of an
  // extraction's start, too few for lookups at every row.
  std::unordered_map<std::string, Assertion*> groups_;
  Assertion* lastGroup_ = nullptr;
};

bool Aggregation::run(const std::string& sql, size_t width, const RowSink& sink) {
  return runCancellableQuery(connection_, sql, [&](const TextRow& row) {
    if (row.size() == width) return sink(row);
    setError("Error: the database answered an aggregate with %zu columns instead of %zu", row.size(), width);
    return false;
  });
}

// Reads the single row of an aggregate that has one.
bool Aggregation::runForOneRow(const std::string& sql, size_t width, TextRow& row) {
  row.clear();
  if (!run(sql, width, [&](const TextRow& r) {
        row = r;
        return true;
      }))
    return false;
  if (!row.empty()) return true;
  setError("Error: the individuals could not be counted");
  return false;
}

bool Aggregation::checkIndividuals(long& individuals) {
  progressLine2("Counting the individuals");
  const bool weighted = !matrix_.weightColumn.empty();
  TextRow counts;
  if (!runForOneRow(sql_.individuals(), weighted ? 3 : 2, counts)) return false;
  individuals = static_cast<long>(numberOf(counts[1]));
  rows_ =
      numberOf(counts[0]) > numberOf(counts[1]) ? AggregateSql::Rows::Repeated : AggregateSql::Rows::OnePerIndividual;
  // An individual of one row cannot disagree with itself.
  TextRow check;
  if (rows_ == AggregateSql::Rows::Repeated) {
    progressLine2("Checking the individuals");
    const size_t variables = matrix_.cellCount();
    if (!runForOneRow(sql_.individualCheck(), 1 + variables + (weighted ? 1 : 0), check)) return false;
    for (size_t v = 0; v < variables; ++v) {
      if (!check[v + 1]) continue;
      setError("Value of column '%s' differ from previous definition of '%s'", matrix_.variable(v).name.c_str(),
               check[v + 1]->c_str());
      return false;
    }
  }
  if (weighted && counts[2]) {
    setError("Ponderation of individual '%s' is null or negative", counts[2]->c_str());
    return false;
  }
  if (weighted && !check.empty() && check.back()) {
    setError("Ponderation differ from previous definition of '%s'", check.back()->c_str());
    return false;
  }
  return true;
}

// Values that differ only in blanks at their ends name the same group, as
// fetched texts are trimmed.
Assertion& Aggregation::groupNamed(const std::string& name) {
  Assertion*& group = groups_[name];
  if (!group) group = &matrix_.createAssertion(name);
  return *group;
}

bool Aggregation::addCell(Assertion& assertion, size_t variable, const char* text, double weight) {
  CellValue cell;
  if (matrix_.variable(variable).addCell(text, cell) && assertion.value(variable).addCell(cell, weight)) return true;
  setError("Memory allocation failed");
  return false;
}

// A quantitative value is its bounds, the weight of the individuals that
// have a number and the weight of those that have none.
bool Aggregation::readGroups() {
  progressLine2("Counting the individuals of each group and the bounds of the numbers");
  return run(sql_.groups(rows_), 2 + 4 * matrix_.quantitativeCount(), [&](const TextRow& row) {
    if (!row[0]) return true;
    Assertion& assertion = groupNamed(*row[0]);
    assertion.memberCount += static_cast<int32_t>(numberOf(row[1]));
    size_t field = 2;
    for (size_t v = 0; v < matrix_.cellCount(); ++v) {
      if (matrix_.variable(v).isCategorical()) continue;
      const double numbered = numberOf(row[field + 2]);
      const double missing = numberOf(row[field + 3]);
      if ((row[field] && !addCell(assertion, v, textOf(row[field]), numbered)) ||
          (row[field + 1] && !addCell(assertion, v, textOf(row[field + 1]), 0.0)) ||
          (missing > 0.0 && !addCell(assertion, v, nullptr, missing)))
        return false;
      field += 4;
    }
    return true;
  });
}

// The group of a row of the categories. Rows of one group often come
// together, so the last one found is tried first.
Assertion* Aggregation::knownGroup(const std::string& name) {
  if (lastGroup_ && lastGroup_->id == name) return lastGroup_;
  const auto group = groups_.find(name);
  if (group == groups_.end()) {
    setError("Error: group '%s' appeared while the database was aggregating", name.c_str());
    return nullptr;
  }
  return lastGroup_ = group->second;
}

// The categories enter the variable in ascending byte order of their names,
// whatever the order of the rows: the rows are kept in a compact form (one
// entry per group and category, as many as the values will hold) until all
// names are known.
bool Aggregation::readCategories(size_t variable) {
  progressLine2("Weighing the categories of '%s'", matrix_.variable(variable).name.c_str());
  struct Weighed {
    Assertion* assertion;
    int32_t name;  // -1: the individuals without a category
    double weight;
  };
  std::unordered_map<std::string, int32_t> names;
  std::vector<Weighed> weighed;
  const bool read = run(sql_.categories(variable, rows_), 3, [&](const TextRow& row) {
    if (!row[0]) return true;
    Assertion* group = knownGroup(*row[0]);
    if (!group) return false;
    int32_t name = -1;
    if (row[1]) name = names.try_emplace(*row[1], static_cast<int32_t>(names.size())).first->second;
    weighed.push_back({group, name, numberOf(row[2])});
    return true;
  });
  if (!read) return false;
  std::vector<const std::pair<const std::string, int32_t>*> sorted;
  sorted.reserve(names.size());
  for (const auto& name : names) sorted.push_back(&name);
  std::sort(sorted.begin(), sorted.end(), [](const auto* a, const auto* b) { return a->first < b->first; });
  std::vector<CellValue> cells(names.size());
  for (const auto* name : sorted) {
    if (matrix_.variable(variable).addCell(name->first.c_str(), cells[static_cast<size_t>(name->second)])) continue;
    setError("Memory allocation failed");
    return false;
  }
  CellValue missing;
  static_cast<void>(matrix_.variable(variable).addCell(nullptr, missing));  // a NULL cell cannot fail
  for (const Weighed& w : weighed) {
    const CellValue& cell = w.name < 0 ? missing : cells[static_cast<size_t>(w.name)];
    if (w.assertion->value(variable).addCell(cell, w.weight)) continue;
    setError("Memory allocation failed");
    return false;
  }
  return true;
}

void Aggregation::numberGroups() {
  std::vector<Assertion*> groups;
  for (Assertion& assertion : matrix_.assertions) groups.push_back(&assertion);
  std::sort(groups.begin(), groups.end(), [](const Assertion* a, const Assertion* b) { return a->id < b->id; });
  for (size_t i = 0; i < groups.size(); ++i) groups[i]->number = static_cast<int32_t>(i);
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

  std::vector<bool> categorical(matrix->cellCount());
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
  aggregation.numberGroups();

  progressLine1("Updating data...");
  progressLine2("%s", "");
  if (!matrix->finish(SymbolicMatrix::MemberCells::Added) || !matrix->indexAssertions()) {
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
