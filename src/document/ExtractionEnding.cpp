#include "document/ExtractionEnding.h"

#include "common/ConsoleLog.h"
#include "common/LastError.h"
#include "common/MessageBox.h"
#include "model/SymbolicMatrix.h"
#include "ops/PrivacyThreshold.h"

namespace velda {

namespace {

constexpr long kTicksPerSecond = 10;

void printSummary(const SymbolicMatrix& matrix, long aggregatedIndividuals, long ticks, ConsoleLog& console) {
  console.print("Extraction done in %.1f second%c.", static_cast<double>(ticks) * 0.1,
                ticks == kTicksPerSecond ? ' ' : 's');
  console.print("Symbolic data matrix is composed by:");
  console.print("%d variables (%d qualitatives, %d quantitatives)", static_cast<int>(matrix.variableCount()),
                static_cast<int>(matrix.categoricalCount()), static_cast<int>(matrix.quantitativeCount()));
  if (aggregatedIndividuals >= 0)
    console.print("%d assertions build from %ld individuals aggregated in the database",
                  static_cast<int>(matrix.assertionCount()), aggregatedIndividuals);
  else
    console.print("%d assertions build from %d individuals", static_cast<int>(matrix.assertionCount()),
                  static_cast<int>(matrix.individualCount()));
}

}  // namespace

long elapsedTicks(std::chrono::steady_clock::time_point start, std::chrono::steady_clock::time_point end) {
  if (end <= start) return 0;
  return static_cast<long>((end - start) / std::chrono::milliseconds(100));
}

bool endExtraction(ExtractionResult result, int32_t privacyThreshold, ConsoleLog& console,
                   const ExtractionEndingHooks& hooks) {
  if (!result.matrix) {
    showMessage(lastError(), MessageIcon::Warning);
    return false;
  }
  const long individuals = result.aggregatedIndividuals >= 0 ? result.aggregatedIndividuals
                                                             : static_cast<long>(result.matrix->individualCount());
  if (individuals == 0) {
    showMessage("No individual extracted", MessageIcon::Warning);
    return false;
  }
  if (result.stopped) console.print("*stopped*");

  SymbolicMatrix& matrix = *result.matrix;
  if (!hooks.install || !hooks.install(std::move(result.matrix))) {
    showMessage("Internal error: cannot assert", MessageIcon::Warning);
    return false;
  }
  printSummary(matrix, result.aggregatedIndividuals, elapsedTicks(result.startedAt, result.finishedAt), console);
  if (privacyThreshold > 0 && !ApplyPrivacyThreshold(matrix, console, privacyThreshold)) {
    showMessage(lastError(), MessageIcon::Warning);
    return false;
  }
  if (hooks.resetDescriptiveFields) hooks.resetDescriptiveFields();
  return true;
}

}  // namespace velda
