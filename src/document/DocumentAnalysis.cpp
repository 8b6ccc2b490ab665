// The long operations: Reduce assertions, Divide assertions, Reduce Hordes.
#include "document/Document.h"
#include "model/SymbolicMatrix.h"
#include "ops/division/Division.h"
#include "ops/division/Hordes.h"
#include "ops/reduction/Reduction.h"

namespace velda {

namespace {

constexpr int32_t kDefaultReductionThreshold = 80;
constexpr int32_t kDefaultDivisionClasses = 3;

}  // namespace

bool Document::runLongOperation(const char* title, const char* canceledText, const char* failedText,
                                const std::function<bool()>& operation) {
  bool cancelled = false;
  const bool result = ui_.runWithProgress(title, operation, cancelled);
  // A cancel wins even over a result the operation had already reached.
  if (cancelled || !result) {
    ui_.showMessage(cancelled ? canceledText : failedText, MessageIcon::Warning);
    finishCommand();
    return false;
  }
  setModified();
  refreshDisplays();
  finishCommand();
  return true;
}

bool Document::reduceAssertions() {
  if (!matrix_) return false;
  ReductionValues values;
  values.threshold = matrix_->reductionThreshold > 0 ? matrix_->reductionThreshold : kDefaultReductionThreshold;
  if (!ui_.askReduction(values) || refused(checkReductionValues(values))) return false;
  return runLongOperation("Reducing assertions", "Reduction canceled", "Reduction failed",
                          [&] { return Reduce(*matrix_, values.threshold, console_); });
}

bool Document::divideAssertions() {
  if (!matrix_) return false;
  DivisionValues values;
  values.classes = matrix_->divisionClassCount > 0 ? matrix_->divisionClassCount : kDefaultDivisionClasses;
  if (!ui_.askDivision(values) || refused(checkDivisionValues(values))) return false;
  return runLongOperation("Dividing assertions", "Division canceled", "Division failed",
                          [&] { return Divide(*matrix_, values.classes); });
}

bool Document::reduceHordes() {
  if (!matrix_) return false;
  ReductionValues values;
  values.threshold = matrix_->reductionThreshold > 0 ? matrix_->reductionThreshold : kDefaultReductionThreshold;
  if (!ui_.askReduction(values) || refused(checkReductionValues(values))) return false;
  return runLongOperation("Reducing Hordes", "Reduction canceled", "Reduction failed",
                          [&] { return ReduceHordes(*matrix_, values.threshold, console_); });
}

}  // namespace velda
