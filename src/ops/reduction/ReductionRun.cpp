#include "ops/reduction/ReductionRun.h"

#include <chrono>
#include <new>

#include "common/ConsoleLog.h"
#include "common/Progress.h"
#include "model/CategoricalValue.h"
#include "model/CategoricalVariable.h"
#include "model/Taxonomy.h"
#include "ops/reduction/AssertionReduction.h"

namespace velda {

bool ReductionRun::reduceAll(WorkSet& workSet, std::vector<std::unique_ptr<Assertion>>& reduced) {
  reduced.clear();
  progressLine1("Reduction in progress...");
  try {
    reduced.reserve(workSet.records.size());
    for (ReductionRecord& record : workSet.records) {
      const auto started = std::chrono::steady_clock::now();
      AssertionReduction reduction(matrix_, record, threshold_, cancel_, levelCap_);
      if (!reduction.run()) {
        reduced.clear();
        return false;
      }
      if (reduction.capped())
        console_.print("Assertion %s: search stopped after %lld levels, best reduction found is kept",
                       record.assertion().id.c_str(), static_cast<long long>(reduction.levelsVisited()));
      reduced.push_back(record.reducedAssertion(matrix_));
      record.release();
      if (figures_) {
        const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - started;
        figures_->push_back(
            {record.assertion().id, record.size(), reduction.levelsVisited(), reduction.capped(), spent.count()});
      }
    }
  } catch (const std::bad_alloc&) {
    reduced.clear();
    return false;
  }
  return true;
}

void ReductionRun::refreshSubtreeWeights(const SymbolicMatrix& matrix, std::vector<std::unique_ptr<Assertion>>& rows) {
  for (size_t v = 0; v < matrix.variableCount(); ++v) {
    const SymbolicVariable& variable = matrix.variable(v);
    if (!variable.isCategorical() || !static_cast<const CategoricalVariable&>(variable).hasTaxonomy()) continue;
    for (auto& row : rows) computeSubtreeWeights(static_cast<CategoricalValue&>(row->value(v)));
  }
}

}  // namespace velda
