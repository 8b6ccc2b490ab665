// The commands that make new data: New (extraction) and New by join.
#include <new>

#include "common/LastError.h"
#include "common/PathText.h"
#include "common/SafeFiles.h"
#include "db/Connection.h"
#include "db/aggregation/DatabaseAggregation.h"
#include "db/extraction/Extraction.h"
#include "document/BusyScope.h"
#include "document/DialogChecks.h"
#include "document/Document.h"
#include "document/ExtractionEnding.h"
#include "document/export/DocumentMetadata.h"
#include "document/project/JoinFiles.h"
#include "model/SymbolicMatrix.h"

namespace velda {

bool Document::refused(const std::optional<Refusal>& refusal) {
  if (!refusal) return false;
  ui_.showMessage(refusal->text, refusal->icon);
  return true;
}

bool Document::newFromDatabase() {
  // Like Open: the current data goes first, so a failed extraction leaves
  // the document empty.
  if (!closeData()) return false;
  NewValues values;
  if (!ui_.askNew(values) || refused(checkNewValues(values))) return false;
  if (!connection_) {
    ui_.showMessage("No data source: connect to a database first", MessageIcon::Warning);
    return false;
  }
  const std::string sql = queryOf(values.tableName, values.query);
  ExtractionOptions options;
  options.lastColumnIsWeight = values.lastColumnIsWeight;
  options.sampleSize = values.sampling ? values.sampleSize : 0;
  ExtractionResult result;
  bool cancelled = false;
  ui_.runWithProgress(
      "Extraction of individuals",
      [&] {
        result = values.inDatabase ? aggregateInDatabase(*connection_, sql, options.lastColumnIsWeight)
                                   : extractIndividuals(*connection_, sql, options);
        return result.matrix != nullptr;
      },
      cancelled);

  const std::string source = dataSourceName(*connection_);
  // The extraction's ending works on the new matrix (the privacy threshold
  // may drop groups) before the document takes it.
  std::unique_ptr<SymbolicMatrix> extracted;
  ExtractionEndingHooks hooks;
  hooks.install = [&extracted](std::unique_ptr<SymbolicMatrix> matrix) {
    extracted = std::move(matrix);
    return true;
  };
  hooks.resetDescriptiveFields = [&] {
    resetMetadata();
    metadata_->setOrigin(sql, source);
  };
  bool installed;
  try {
    installed = endExtraction(std::move(result), values.minimumSet ? values.minimum : 0, console_, hooks);
    if (installed) installMatrix(std::move(extracted), FileRecord(), true);
  } catch (const std::bad_alloc&) {
    // Memory ran out on the way: the command fails as a whole and the
    // document stays empty, as the command found it.
    modified_ = false;
    static_cast<void>(closeData());  // with nothing to save it cannot refuse
    throw;
  }
  finishCommand();
  return installed;
}

bool Document::newByJoin() {
  if (!closeData()) return false;
  JoinValues values;
  if (!ui_.askJoin(values) || refused(checkJoinValues(values))) return false;
  std::unique_ptr<SymbolicMatrix> joined;
  {
    std::FILE* first = openRegularFile(values.firstFile);
    std::FILE* second = first ? openRegularFile(values.secondFile) : nullptr;
    if (!second) {
      if (first) std::fclose(first);
      setError("Can not open file %s", pathForDisplay(first ? values.secondFile : values.firstFile).c_str());
      return showFailure();
    }
    BusyScope busy(ui_, "Joining files...");
    joined = JoinFiles(first, second);
    std::fclose(first);
    std::fclose(second);
  }
  if (!joined) return showFailure();
  installMatrix(std::move(joined), FileRecord(), true);
  printSummary(false);
  finishCommand();
  return true;
}

}  // namespace velda
