#include "db/extraction/ExtractionBuilder.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <string_view>

#include "common/Decimal.h"
#include "common/LastError.h"
#include "common/Random15.h"
#include "db/extraction/VariableNamer.h"
#include "model/CategoricalVariable.h"
#include "model/QuantitativeVariable.h"

namespace velda {

namespace {

constexpr size_t kModalityBuckets = 19;
// Turns a draw of the 15-bit generator into a number of [0, 1].
constexpr double kRandomScale = 3.051850947599719e-5;

std::unique_ptr<SymbolicVariable> variableFor(const std::string& name, ColumnKind kind) {
  if (kind == COLUMN_CHARACTER) return std::make_unique<CategoricalVariable>(name, 1, kModalityBuckets);
  return std::make_unique<QuantitativeVariable>(name, 1);
}

// A NULL weight reads as 0; anything but a positive finite number is
// refused by the caller.
double readWeight(const char* text) { return text ? parseDecimal(text) : 0.0; }
bool isValidWeight(double weight) { return weight > 0.0 && std::isfinite(weight); }

// Sets the reason and returns false for a weight that cannot be taken.
[[nodiscard]] bool acceptedWeight(double weight, const char* individualId) {
  if (!isValidWeight(weight)) {
    setError("Ponderation of individual '%s' is null or negative", individualId);
    return false;
  }
  if (weight > kLargestWeight) {
    setError("Ponderation of individual '%s' is too large", individualId);
    return false;
  }
  return true;
}

}  // namespace

ExtractionBuilder::ExtractionBuilder(std::unique_ptr<SymbolicMatrix> matrix, size_t variableCount,
                                     const ExtractionOptions& options)
    : matrix_(std::move(matrix)),
      variableCount_(variableCount),
      weighted_(options.lastColumnIsWeight),
      sampleSize_(std::max<int32_t>(options.sampleSize, 0)),
      rowCells_(new CellValue[variableCount]),
      cellCaches_(variableCount) {
  for (size_t v = 0; v < variableCount; ++v) {
    if (!matrix_->variable(v).isCategorical()) continue;
    cellCaches_[v] = std::make_unique<ExtractionCellCache>();
    static_cast<CategoricalVariable&>(matrix_->variable(v)).indexNames();
  }
  // Individuals and assertions are appended to the long chains of tables
  // whose bucket counts stay fixed until the matrix is finished.
  matrix_->individuals.trackTails(true);
  matrix_->assertions.trackTails(true);
  matrix_->individuals.rememberInsertOrder();
  matrix_->assertions.rememberInsertOrder();
}

std::unique_ptr<ExtractionBuilder> ExtractionBuilder::prepare(const std::vector<ExtractionColumn>& columns,
                                                              const ExtractionOptions& options) {
  std::unique_ptr<SymbolicMatrix> matrix = matrixFor(columns, options);
  if (!matrix) return nullptr;
  const size_t variableCount = matrix->cellCount();
  try {
    return std::unique_ptr<ExtractionBuilder>(new ExtractionBuilder(std::move(matrix), variableCount, options));
  } catch (const std::bad_alloc&) {
    setError("Memory allocation failed");
    return nullptr;
  }
}

std::unique_ptr<SymbolicMatrix> ExtractionBuilder::matrixFor(const std::vector<ExtractionColumn>& columns,
                                                             const ExtractionOptions& options) {
  const long weightColumns = options.lastColumnIsWeight ? 1 : 0;
  const long variableCount = static_cast<long>(columns.size()) - 2 - weightColumns;
  if (variableCount < 1) {
    setError("Insufficient number of columns");
    return nullptr;
  }
  if (columns[1].kind != COLUMN_CHARACTER) {
    setError("Invalid assertion column type");
    return nullptr;
  }
  if (options.lastColumnIsWeight && columns.back().kind == COLUMN_CHARACTER) {
    setError("Invalid ponderation column type");
    return nullptr;
  }
  try {
    std::unique_ptr<SymbolicMatrix> matrix = SymbolicMatrix::create();
    matrix->individualColumn = columns[0].name;
    matrix->assertionColumn = columns[1].name;
    if (options.lastColumnIsWeight) matrix->weightColumn = columns.back().name;
    VariableNamer namer(*matrix);
    for (long i = 0; i < variableCount; ++i) {
      const ExtractionColumn& column = columns[static_cast<size_t>(i + 2)];
      matrix->appendVariable(variableFor(namer.nameFor(column.name), column.kind));
    }
    // Every column of the query is a cell-holding variable, and its
    // categorical ones may become mothers: a matrix without individuals
    // takes that declaration.
    return matrix->declareCellVariables(matrix->variableCount(), matrix->categoricalCount()) ? std::move(matrix)
                                                                                             : nullptr;
  } catch (const std::bad_alloc&) {
    setError("Memory allocation failed");
    return nullptr;
  }
}

bool ExtractionBuilder::processRow(const char* const* texts) {
  try {
    return addRow(texts);
  } catch (const std::bad_alloc&) {
    setError("Memory allocation failed");
    return false;
  }
}

bool ExtractionBuilder::addRow(const char* const* texts) {
  const char* individualId = texts[0];
  const char* assertionId = texts[1];
  if (!individualId || !assertionId) return true;

  // The individual's and the group's lookups reach memory that is rarely in
  // the cache: start loading it now, to arrive while the cells are read.
  const uint64_t idHash = ExtractionIndex::hashOf(individualId);
  const uint64_t groupHash = ExtractionIndex::hashOf(assertionId);
  seenIndividuals_.prefetch(idHash);
  assertionIndex_.prefetch(groupHash);

  if (!readCells(texts)) {
    setError("Memory allocation failed");
    return false;
  }
  const double weight = weighted_ ? readWeight(texts[variableCount_ + 2]) : 1.0;

  Individual* individual = seenIndividuals_.mayContain(idHash) ? matrix_->findIndividual(individualId) : nullptr;
  if (individual) {
    if (!checkRepeat(*individual, weight)) return false;
  } else {
    if (!acceptedWeight(weight, individualId)) return false;
    individual = &insertIndividual(individualId, weight);
    seenIndividuals_.add(idHash);
  }

  Assertion& assertion = assertionNamed(assertionId, groupHash);
  if (matrix_->isMember(*individual, assertion)) return true;  // a duplicate row
  matrix_->link(*individual, assertion);
  if (sampleSize_ > 0) {
    sample(*individual, assertion);
    return true;
  }
  // Added at once, in link order as the finished matrix needs them, while
  // the group's values and the row's cells are still in the cache.
  if (matrix_->addMember(assertion, *individual)) return true;
  setError("Memory allocation failed");
  return false;
}

bool ExtractionBuilder::readCells(const char* const* texts) {
  for (size_t v = 0; v < variableCount_; ++v) {
    SymbolicVariable& variable = matrix_->variable(v);
    const char* text = texts[v + 2];
    ExtractionCellCache* cache = cellCaches_[v].get();
    if (!(cache ? cache->addCell(variable, text, rowCells_[v]) : variable.addCell(text, rowCells_[v]))) return false;
  }
  return true;
}

// A repeated individual must come with the same cells and the same weight.
bool ExtractionBuilder::checkRepeat(const Individual& individual, double weight) const {
  for (size_t v = 0; v < variableCount_; ++v) {
    if (rowCells_[v].sameAs(individual.cells[v])) continue;
    setError("Value of column '%s' differ from previous definition of '%s'", matrix_->variable(v).name.c_str(),
             individual.id.c_str());
    return false;
  }
  if (!acceptedWeight(weight, individual.id.c_str())) return false;
  if (weight != individual.weight) {
    setError("Ponderation differ from previous definition of '%s'", individual.id.c_str());
    return false;
  }
  return true;
}

Individual& ExtractionBuilder::insertIndividual(const char* id, double weight) {
  Individual& fresh = matrix_->individuals.insert(id, variableCount_, weight);  // made in the table's node
  std::copy(rowCells_.get(), rowCells_.get() + variableCount_, fresh.cells.get());
  return fresh;
}

Assertion& ExtractionBuilder::assertionNamed(const char* id, uint64_t hash) {
  if (Assertion* found = assertionIndex_.find(id, hash)) return *found;
  Assertion& created = matrix_->createAssertion(id);
  assertionIndex_.add(created, hash);
  return created;
}

// Reservoir sampling: the k-th individual linked to a group is kept with
// probability N / k, in place of a member chosen at random. The members kept
// so far are the sample, in link order, and the newcomer was linked last.
void ExtractionBuilder::sample(Individual& newcomer, Assertion& assertion) {
  const int32_t seen = ++matrix_->sampleCounter(assertion.number);
  if (seen <= sampleSize_) return;
  const double u = random15() * kRandomScale;
  if (static_cast<double>(sampleSize_) / seen < u) {
    dropMembership(newcomer, assertion);
    return;
  }
  auto& members = assertion.members;
  const auto slot = static_cast<size_t>(random15() % sampleSize_);
  Individual* replaced = members[slot];
  members[slot] = &newcomer;
  members.back() = replaced;
  dropMembership(*replaced, assertion);
}

// Unlinks a member that is last among the assertion's members (found at
// once) and destroys it when it belongs to no other assertion.
void ExtractionBuilder::dropMembership(Individual& individual, Assertion& assertion) {
  matrix_->unlink(individual, assertion);
  if (!individual.hasMembership()) matrix_->removeIndividual(individual);
}

std::unique_ptr<SymbolicMatrix> ExtractionBuilder::finish(long rowsRead) {
  matrix_->rowsRead = rowsRead;
  matrix_->individuals.trackTails(false);
  matrix_->assertions.trackTails(false);
  if (!matrix_->finish(sampleSize_ > 0 ? SymbolicMatrix::MemberCells::ByIndividual
                                       : SymbolicMatrix::MemberCells::Added))
    return nullptr;
  return std::move(matrix_);
}

}  // namespace velda
