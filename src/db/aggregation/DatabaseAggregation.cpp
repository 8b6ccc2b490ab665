#include "db/aggregation/DatabaseAggregation.h"

#include <strings.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <new>
#include <string_view>
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

// Numbers names in the order they first come, 0, 1, 2... The aggregates
// send one row per group and category in whatever order the database's
// hash tables give them, and every row looks up two names: a flat table of
// (hash, number) slots keeps each lookup to a few cache lines.
class NameNumbers {
 public:
  // The name's number; an unknown name gets the next one.
  int32_t number(const std::string& name) {
    const auto [slot, found] = probe(name);
    if (found) return slots_[slot].number;
    names_.push_back(name);
    const auto number = static_cast<int32_t>(names_.size() - 1);
    slots_[slot] = {hashOf(name), number};
    if (2 * names_.size() > slots_.size()) grow();
    return number;
  }
  // The name's number, -1 when unknown.
  int32_t find(const std::string& name) const {
    const auto [slot, found] = probe(name);
    return found ? slots_[slot].number : -1;
  }
  const std::string& name(int32_t number) const { return names_[static_cast<size_t>(number)]; }
  size_t size() const { return names_.size(); }

 private:
  struct Slot {
    uint32_t hash = 0;
    int32_t number = -1;  // -1: empty
  };
  static uint32_t hashOf(const std::string& name) { return static_cast<uint32_t>(std::hash<std::string_view>()(name)); }
  // The slot that holds the name, or the empty one where it would go.
  std::pair<size_t, bool> probe(const std::string& name) const {
    const uint32_t hash = hashOf(name);
    const size_t mask = slots_.size() - 1;
    for (size_t slot = hash & mask;; slot = (slot + 1) & mask) {
      const Slot& at = slots_[slot];
      if (at.number < 0) return {slot, false};
      if (at.hash == hash && names_[static_cast<size_t>(at.number)] == name) return {slot, true};
    }
  }
  void grow() {
    std::vector<Slot> slots(2 * slots_.size());
    for (const Slot& at : slots_) {
      if (at.number < 0) continue;
      size_t slot = at.hash & (slots.size() - 1);
      while (slots[slot].number >= 0) slot = (slot + 1) & (slots.size() - 1);
      slots[slot] = at;
    }
    slots_.swap(slots);
  }

  std::vector<std::string> names_;
  std::vector<Slot> slots_ = std::vector<Slot>(64);
};

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
  [[nodiscard]] bool addCell(Assertion& assertion, size_t variable, const char* text, double weight);

  const Connection& connection_;
  SymbolicMatrix& matrix_;
  const AggregateSql& sql_;
  // Whether some individual has several rows, known after the count.
  AggregateSql::Rows rows_ = AggregateSql::Rows::Repeated;
  // The groups by name and by number: the matrix's table keeps the few
  // buckets of an extraction's start, too few for lookups at every row.
  NameNumbers groupNumbers_;
  std::vector<Assertion*> groups_;
  // The rows of the categories of one variable in a compact form, kept until
  // all category names are known; reused from one variable to the next.
  struct Weighed {
    int32_t group;     // its place in groups_
    int32_t category;  // its number in the names, -1 for the individuals without one
    double weight;
  };
  // Adds the rows, once their names are known, to the values of the variable.
  [[nodiscard]] bool weighCategories(size_t variable, const NameNumbers& names);

  std::vector<Weighed> weighed_;
  // The same rows group by group, each category given by its place in the
  // byte order of the names (the individuals without one last).
  std::vector<Weighed> byGroup_;
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
  const auto number = static_cast<size_t>(groupNumbers_.number(name));
  if (number == groups_.size()) groups_.push_back(&matrix_.createAssertion(name));
  return *groups_[number];
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

// The categories enter the variable in ascending byte order of their names,
// whatever the order of the rows: the rows are kept in a compact form (one
// entry per group and category, as many as the values will hold) until all
// names are known. They then go to the values group by group, each group's
// in the order of its categories, so that a value's entries are written
// while they are at hand and come in the same order whatever the order of
// the rows.
bool Aggregation::readCategories(size_t variable) {
  progressLine2("Weighing the categories of '%s'", matrix_.variable(variable).name.c_str());
  NameNumbers names;
  weighed_.clear();
  const bool read = run(sql_.categories(variable, rows_), 3, [&](const TextRow& row) {
    if (!row[0]) return true;
    const int32_t group = groupNumbers_.find(*row[0]);
    if (group < 0) {
      setError("Error: group '%s' appeared while the database was aggregating", row[0]->c_str());
      return false;
    }
    weighed_.push_back({group, row[1] ? names.number(*row[1]) : -1, numberOf(row[2])});
    return true;
  });
  return read && weighCategories(variable, names);
}

bool Aggregation::weighCategories(size_t variable, const NameNumbers& names) {
  std::vector<int32_t> sorted(names.size());
  for (size_t n = 0; n < sorted.size(); ++n) sorted[n] = static_cast<int32_t>(n);
  std::sort(sorted.begin(), sorted.end(), [&](int32_t a, int32_t b) { return names.name(a) < names.name(b); });
  // cells[r]: the cell of the r-th name in byte order, then the NULL one.
  std::vector<CellValue> cells(names.size() + 1);
  std::vector<int32_t> rank(names.size());
  for (size_t r = 0; r < sorted.size(); ++r) {
    rank[static_cast<size_t>(sorted[r])] = static_cast<int32_t>(r);
    if (matrix_.variable(variable).addCell(names.name(sorted[r]).c_str(), cells[r])) continue;
    setError("Memory allocation failed");
    return false;
  }
  static_cast<void>(matrix_.variable(variable).addCell(nullptr, cells.back()));  // a NULL cell cannot fail
  // The rows by group (counted, then placed), each group's by category.
  std::vector<size_t> start(groups_.size() + 1, 0);
  for (const Weighed& w : weighed_) ++start[static_cast<size_t>(w.group) + 1];
  for (size_t g = 1; g < start.size(); ++g) start[g] += start[g - 1];
  byGroup_.resize(weighed_.size());
  std::vector<size_t> next(start.begin(), start.end() - 1);
  for (const Weighed& w : weighed_) {
    const int32_t place = w.category < 0 ? static_cast<int32_t>(names.size()) : rank[static_cast<size_t>(w.category)];
    byGroup_[next[static_cast<size_t>(w.group)]++] = {w.group, place, w.weight};
  }
  for (size_t g = 0; g + 1 < start.size(); ++g) {
    const auto first = byGroup_.begin() + static_cast<std::ptrdiff_t>(start[g]);
    const auto last = byGroup_.begin() + static_cast<std::ptrdiff_t>(start[g + 1]);
    std::sort(first, last, [](const Weighed& a, const Weighed& b) { return a.category < b.category; });
    SymbolicValue& value = groups_[g]->value(variable);
    for (auto w = first; w != last; ++w) {
      if (value.addCell(cells[static_cast<size_t>(w->category)], w->weight)) continue;
      setError("Memory allocation failed");
      return false;
    }
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
  if (!matrix->finish(SymbolicMatrix::MemberCells::Added)) return nullptr;
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
