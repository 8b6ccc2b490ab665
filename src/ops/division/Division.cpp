#include "ops/division/Division.h"

#include <new>
#include <vector>

#include "common/MessageBox.h"
#include "common/Progress.h"
#include "model/SymbolicMatrix.h"
#include "ops/CancelPoll.h"
#include "ops/division/DivisionTree.h"
#include "ops/reduction/WorkSet.h"

namespace velda {

namespace {

constexpr int32_t kMinClasses = 2;
constexpr int32_t kMaxClasses = 100;

}  // namespace

int Divide(SymbolicMatrix& matrix, int32_t classes) {
  matrix.hordes.clear();
  if (classes < kMinClasses || classes > kMaxClasses) return 0;
  if (!matrix.indexAssertions()) return 0;
  WorkSet workSet;
  if (!workSet.buildFromAssertions(matrix)) return 0;
  const bool allQuantitative = matrix.categoricalCount() == 0;
  const bool allCategorical = matrix.quantitativeCount() == 0;
  if (!allQuantitative && !allCategorical) {
    showMessage("PAS ENCORE DE MELANGE!", MessageIcon::Warning);
    return 0;
  }

  progressLine1("Division in progress...");
  CancelPoll cancel;
  MissingValueNotice missingValues;
  std::vector<Horde> hordes;
  try {
    hordes.reserve(workSet.records.size());
    for (const ReductionRecord& record : workSet.records) {
      if (cancel.requested()) return 0;
      progressLine2("Assertion %s", record.assertion().id.c_str());
      DivisionTree tree(matrix, record, classes, cancel, missingValues);
      const DivisionTree::Outcome outcome = tree.grow();
      if (outcome == DivisionTree::Outcome::Cancelled) return 0;
      if (outcome == DivisionTree::Outcome::Stopped) {
        showMessage("Division stopped... Bad Class Number, try to choose lower number", MessageIcon::Warning);
        return 0;
      }
      hordes.push_back(tree.horde());
    }
  } catch (const std::bad_alloc&) {
    return 0;
  }
  matrix.hordes = std::move(hordes);
  matrix.divisionClassCount = classes;
  return 1;
}

}  // namespace velda
