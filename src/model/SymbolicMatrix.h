#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "common/ChainedHashTable.h"
#include "model/AnalysisResults.h"
#include "model/Assertion.h"
#include "model/CellValue.h"
#include "model/DependenceRule.h"
#include "model/Individual.h"
#include "model/Modality.h"
#include "model/SymbolicVariable.h"

namespace velda {

using IndividualTable = ChainedHashTable<Individual, StringKeyTraits<Individual, &Individual::id>>;
using AssertionTable = ChainedHashTable<Assertion, StringKeyTraits<Assertion, &Assertion::id>>;

// The document's data: variables (columns), assertions (rows) and the
// individuals they were built from.
class SymbolicMatrix {
 public:
  static constexpr size_t kIndividualBuckets = 99999;
  static constexpr size_t kAssertionBuckets = 599;
  static constexpr size_t kInitialCounters = 999;
  static constexpr size_t kCounterGrowth = 100;

  // A new empty matrix. Throws std::bad_alloc.
  static std::unique_ptr<SymbolicMatrix> create(size_t individualBuckets = kIndividualBuckets,
                                                size_t assertionBuckets = kAssertionBuckets);

  // Variables. Appending gives every existing assertion (and every reduced
  // assertion and horde class) an empty value for the new variable; throws
  // std::bad_alloc leaving the matrix unchanged.
  void appendVariable(std::unique_ptr<SymbolicVariable> variable);
  // Appends several variables at once with every assertion's values for
  // them: values[a][j] is the value of the a-th assertion in table order for
  // added[j]; the reduced assertions and horde classes get copies of their
  // assertion's values.
  // Throws std::bad_alloc leaving the matrix unchanged.
  void appendVariables(std::vector<std::unique_ptr<SymbolicVariable>>& added,
                       std::vector<std::vector<std::unique_ptr<SymbolicValue>>>& values);
  size_t variableCount() const { return variables_.size(); }
  size_t categoricalCount() const { return categoricalCount_; }
  size_t quantitativeCount() const { return variables_.size() - categoricalCount_; }
  SymbolicVariable& variable(size_t i) { return *variables_[i]; }
  const SymbolicVariable& variable(size_t i) const { return *variables_[i]; }
  const std::vector<std::unique_ptr<SymbolicVariable>>& variables() const { return variables_; }
  // Removes the chosen variables (indexes ascending, each once, fewer than
  // all): their values in every row (assertions, reduced assertions, horde
  // classes), their daughter marks and, for cell-holding ones, their cells:
  // keptCells then holds every individual's remaining cells in table order.
  // The kind, cell-holding and mother-candidate counts follow. Indexes that
  // variables and rules hold are the caller's to move. Allocates nothing.
  void eraseVariables(std::span<const int32_t> chosen, std::vector<std::unique_ptr<CellValue[]>> keptCells);
  // Takes every variable, daughter mark and rule of `first` then `second`
  // (whose indexes the caller has shifted past the first's variables) into
  // this empty matrix, leaving the sources without any; the cell-holding
  // and mother-candidate counts are the sums of both. Throws std::bad_alloc
  // before anything moved.
  void takeVariables(SymbolicMatrix& first, SymbolicMatrix& second);

  // The variables whose cells individuals hold: the extraction's columns,
  // the first variables of an extracted matrix.
  size_t cellCount() const { return cellCount_; }
  // Makes the first `count` variables the cell-holding ones, `motherCandidates`
  // of them able to be the mother of a dependence, as the extraction (or a
  // project file) sets them up. Refused while individuals exist, whose cells
  // were made for the previous count, or when `count` exceeds the variables.
  [[nodiscard]] bool declareCellVariables(size_t count, size_t motherCandidates);

  // Individuals and assertions.
  Individual* findIndividual(std::string_view id) { return individuals.find(id); }
  // Throws std::bad_alloc.
  Individual& insertIndividual(Individual&& individual) { return individuals.insert(std::move(individual)); }
  // Unlinks the individual from every assertion, then destroys it.
  void removeIndividual(Individual& individual);
  Assertion* findAssertion(std::string_view id) { return assertions.find(id); }
  // A new assertion numbered by the assertion count, with an empty value per
  // variable. Throws std::bad_alloc leaving the matrix unchanged.
  Assertion& createAssertion(std::string id);
  size_t individualCount() const { return individuals.size(); }
  size_t assertionCount() const { return assertions.size(); }

  // Membership.
  bool isMember(const Individual& individual, const Assertion& assertion) const {
    return individual.belongsTo(&assertion);
  }
  // Records the assertion in the individual's membership and the individual
  // among the assertion's members. Throws std::bad_alloc.
  void link(Individual& individual, Assertion& assertion);
  void unlink(Individual& individual, Assertion& assertion);
  // Counts the individual and adds its cells, with its weight, to the
  // assertion's values of the variables it holds cells for. Returns false at the
  // first refusal.
  [[nodiscard]] bool addMember(Assertion& assertion, const Individual& individual);
  // Empties the assertion's values of the cell-holding variables and adds
  // its members again.
  [[nodiscard]] bool recomputeAssertion(Assertion& assertion);

  // How finish() adds the members' cells to the values.
  enum class MemberCells {
    Added,         // they are in the values already
    ByIndividual,  // every individual to the assertions of its membership
  };
  // Completes an extraction: adds the members' cells to the values,
  // compacts the tables and lists the assertions by number
  // (indexAssertions). Returns false (with "Memory allocation failed" set)
  // on failure.
  [[nodiscard]] bool finish(MemberCells cells);
  // Rebuilds the value tables of a categorical variable (in every
  // assertion) to as many buckets as entries: the order that a saved and
  // reopened project has. Throws std::bad_alloc, each table left as it was.
  void compactValues(size_t v);

  // The per-assertion counters used while sampling: grown to (number + 100)
  // entries when a number does not fit.
  int32_t& sampleCounter(int32_t assertionNumber);

  std::string individualColumn;
  std::string assertionColumn;
  std::string weightColumn;  // empty without a weight column
  // The exported title and subtitle, at most 127 characters each.
  std::string title;
  std::string subtitle;

  IndividualTable individuals;
  AssertionTable assertions;
  std::vector<int32_t> sampleCounters;
  int32_t highestCounter = -1;
  long rowsRead = 0;

  // Taxonomies: how many variables have one, and how many of those are
  // among the cell-holding variables.
  int32_t taxonomyCount() const;
  int32_t cellTaxonomyCount() const;

  // Dependences: whether a rule governs the variable, and every rule,
  // groups in creation order.
  bool isDaughter(size_t v) const { return v < isDaughter_.size() && isDaughter_[v] != 0; }
  void markDaughter(size_t v) {
    if (v < isDaughter_.size()) isDaughter_[v] = 1;
  }
  std::vector<std::unique_ptr<DependenceRule>> rules;

  // The threshold of the last successful reduction and the class number of
  // the last division (0: none), offered again by their dialogs.
  int32_t reductionThreshold = 0;
  int32_t divisionClassCount = 0;

  // The assertions by number (slot i holds the assertion numbered i), as
  // exports and tables list them. Operations that add, remove or renumber
  // assertions make it stale; indexAssertions() rebuilds it.
  std::vector<Assertion*> orderedAssertions;
  // Rebuilds orderedAssertions from the assertion table. Returns false (list
  // emptied) when memory runs out or the numbers are not 0..count-1, each once.
  [[nodiscard]] bool indexAssertions();
  // Whether orderedAssertions holds exactly the assertions of the table, each
  // at the slot of its number.
  bool assertionsIndexed() const;

  // The rows of the last reduction: one per assertion, at the same slot as
  // in orderedAssertions, each with one value per variable. Empty when no
  // reduction was made.
  std::vector<std::unique_ptr<Assertion>> reducedAssertions;

  // Results of the analysis operations, kept until the same operation runs
  // again or the matrix is replaced (never saved in project files).
  // Reduction: the volume matrices over the assertions ("before") and over
  // reducedAssertions ("after"), in number order; empty when none.
  TriangularMatrix volumesBefore;
  TriangularMatrix volumesAfter;
  // Division: one horde per assertion, at the slot of its number (its classes
  // and, after "Reduce Hordes", its reduced classes). Empty when no division
  // succeeded.
  std::vector<Horde> hordes;

  // How many variables can be the mother of a dependence: the categorical
  // variables of the extraction (rules change cells), fewer after removals,
  // the sum of both projects' after a join. Stored as the project file's
  // header counter 7; "Add a dependence" is enabled while it is above 0.
  size_t motherCandidateCount() const { return motherCandidates_; }

 private:
  SymbolicMatrix(size_t individualBuckets, size_t assertionBuckets);
  void recountKinds();
  // Rebuilds one assertion's value of categorical variable v (see
  // compactValues).
  static void compactValue(Assertion& a, size_t v);
  // Empties orderedAssertions to a null slot per assertion; false when
  // memory runs out.
  [[nodiscard]] bool clearAssertionIndex();
  // Puts the assertion at the slot of its number; false, with the list
  // emptied, when that slot is taken or out of range.
  [[nodiscard]] bool placeInIndex(Assertion& a);

  std::vector<std::unique_ptr<SymbolicVariable>> variables_;
  // One mark per variable: set when a rule makes it a daughter.
  std::vector<char> isDaughter_;
  size_t categoricalCount_ = 0;
  size_t cellCount_ = 0;
  size_t motherCandidates_ = 0;
};

}  // namespace velda
