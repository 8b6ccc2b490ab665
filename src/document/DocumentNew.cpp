// The commands that make new data: New (extraction) and New by join.
#include <new>

#include "common/LastError.h"
#include "common/SafeFiles.h"
#include "db/Connection.h"
#include "db/DatabaseAggregation.h"
#include "db/Extraction.h"
#include "document/BusyScope.h"
#include "document/DialogChecks.h"
#include "document/Document.h"
#include "document/DocumentMetadata.h"
#include "document/ExtractionEnding.h"
#include "document/JoinFiles.h"
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
        return result.matrix ? 1 : 0;
      },
      cancelled);

  const std::string source = dataSourceName(*connection_);
  ExtractionEndingHooks hooks;
  hooks.install = [this](std::unique_ptr<SymbolicMatrix> matrix) {
    matrix_ = std::move(matrix);
    assertionsOutOfDate_ = false;
    fileRecord_ = FileRecord();
    setModified();
    return true;
  };
  hooks.resetDescriptiveFields = [&] {
    resetMetadata();
    metadata_->setOrigin(sql, source);
  };
  int installed;
  try {
    installed = endExtraction(std::move(result), values.minimumSet ? values.minimum : 0, console_, hooks);
    if (installed) matrix_->indexAssertions();
  } catch (const std::bad_alloc&) {
    // Memory ran out after the new matrix was installed: the command fails
    // as a whole and the document stays empty, as the command found it.
    modified_ = false;
    closeData();
    throw;
  }
  if (installed) {
    refreshDisplays();
    updateTitle();
  }
  finishCommand();
  return installed != 0;
}

bool Document::newByJoin() {
  if (!closeData()) return false;
  JoinValues values;
  if (!ui_.askJoin(values) || refused(checkJoinValues(values))) return false;
  {
    std::FILE* first = openRegularFile(values.firstFile);
    std::FILE* second = first ? openRegularFile(values.secondFile) : nullptr;
    if (!second) {
      if (first) std::fclose(first);
      setError("Can not open file %s", (first ? values.secondFile : values.firstFile).c_str());
      return showFailure();
    }
    BusyScope busy(ui_, "Joining files...");
    matrix_ = JoinFiles(first, second);
    std::fclose(first);
    std::fclose(second);
  }
  if (!matrix_) return showFailure();
  assertionsOutOfDate_ = false;
  fileRecord_ = FileRecord();
  setModified();
  printSummary(false);
  refreshDisplays();
  updateTitle();
  finishCommand();
  return true;
}

}  // namespace velda
