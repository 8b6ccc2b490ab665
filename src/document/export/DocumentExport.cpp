// The export commands: Export, Export and view, Export Hordes.
#include <vector>

#include "common/AtomicFile.h"
#include "common/LastError.h"
#include "common/PathText.h"
#include "document/BusyScope.h"
#include "document/DialogChecks.h"
#include "document/Document.h"
#include "document/export/DocumentMetadata.h"
#include "document/export/ExportPipeline.h"
#include "formats/ExportRows.h"
#include "formats/SymbolicTextWriter.h"
#include "formats/library/SymbolicFile.h"
#include "model/SymbolicMatrix.h"

namespace velda {

namespace {

constexpr size_t kMatrixTextCapacity = 127;

// Every class of every horde, in assertion order then class order: the
// classes name the rows, and the rows' values come from the classes or from
// their reduced forms.
void hordeRows(const SymbolicMatrix& matrix, bool reduced, std::vector<const Assertion*>& labels,
               std::vector<const Assertion*>& rows) {
  for (const Horde& horde : matrix.hordes) {
    for (size_t c = 0; c < horde.classes.size(); ++c) {
      labels.push_back(horde.classes[c].get());
      rows.push_back(reduced && c < horde.reducedClasses.size() ? horde.reducedClasses[c].get()
                                                                : horde.classes[c].get());
    }
  }
}

// Writes the matrix as symbolic text into the open temporary file and reads
// it back into the library's model.
[[nodiscard]] bool writeAndReadBack(ExportTemporaryFile& temporary, SymbolicMatrix& matrix, bool reducedRows,
                                    ConsoleLog& console, symlib::SymbolicFile& model) {
  console.print("exporting...");
  const bool written = IndexAndWriteSymbolicText(temporary.stream(), matrix, reducedRows, &console);
  console.print("[done]");
  if (!written || !temporary.finishWriting()) return false;
  return temporary.readBack(model, console);
}

}  // namespace

bool Document::askExportValues(ExportValues& values) {
  SymbolicMatrix& m = *matrix_;
  values.file = fileRecord_.valid ? fileRecord_.exportName : std::string();
  values.format = fileRecord_.valid ? fileRecord_.exportFormat : ExportFormat::Symbolic;
  values.title = m.title;
  values.subtitle = m.subtitle;
  values.reducedAssertionsAvailable = !m.reducedAssertions.empty();
  values.exportReducedAssertions = values.reducedAssertionsAvailable;
  values.reducedHordesAvailable = hasReducedHordes(m.hordes);
  values.exportReducedHordes = values.reducedHordesAvailable;
  if (!ui_.askExport(values) || refused(checkExportValues(values))) return false;
  if (values.subtitle.empty()) values.subtitle = values.title;
  if (!values.reducedAssertionsAvailable) values.exportReducedAssertions = false;
  if (!values.reducedHordesAvailable) values.exportReducedHordes = false;
  m.title = values.title.substr(0, kMatrixTextCapacity);
  m.subtitle = values.subtitle.substr(0, kMatrixTextCapacity);
  return true;
}

bool Document::exportMatrix() {
  if (!matrix_) return false;
  ExportValues values;
  if (!askExportValues(values)) return false;
  const std::string& destination = values.file;
  const bool table = values.format != ExportFormat::Symbolic;
  const bool xml = !table && !isTextDestination(destination);
  ExportTemporaryFile temporary;
  const bool temporaryOpen = table || temporary.open();
  setModified();  // an export marks the document modified, whatever follows
  if (!temporaryOpen) {
    ui_.showMessage("Can not open temporary file.", MessageIcon::Warning);
    finishCommand();
    return false;
  }
  fileRecord_.exportName = destination;
  fileRecord_.exportFormat = values.format;
  const ExportTexts texts = exportTexts(values.format, destination);
  BusyScope busy(ui_, texts.heading);
  console_.print("%s", texts.heading);

  // The symbolic file is the library's re-written form of the temporary
  // file; the tables come straight from the rows, whose refusals come
  // before the destination is opened, so that they leave it as it was.
  symlib::SymbolicFile model;
  std::vector<const Assertion*> labels;
  std::vector<const Assertion*> rows;
  std::vector<size_t> active;
  const bool prepared = table ? OrderedRows(*matrix_, values.exportReducedAssertions, labels, rows) &&
                                    ActiveVariables(*matrix_, labels, rows, active)
                              : writeAndReadBack(temporary, *matrix_, values.exportReducedAssertions, console_, model);
  if (!prepared) return showFailure();
  console_.print("%s %s ...", texts.saving, pathForDisplay(destination).c_str());
  AtomicFile out;
  if (!out.open(destination)) {
    setError("Can not open destination kvf file %s", pathForDisplay(destination).c_str());
    return showFailure();
  }
  const bool saved = table ? writeTable(out.stream(), values.format, *matrix_, labels, rows, destination)
                           : writeModel(model, out.stream(), xml, destination);
  if (!saved || !out.commit()) return showFailure();
  if (xml) {
    metadataFileName_ = metadataNameFor(destination);
    if (!metadata_->write(metadataFileName_, *matrix_)) return showFailure();
  }
  console_.print("[done] - Finished");
  finishCommand();
  return true;
}

bool Document::viewExported() {
  const std::string& file = fileRecord_.exportName;
  const bool text = fileRecord_.exportFormat != ExportFormat::Symbolic || isTextDestination(file);
  if (ui_.startViewer(file, text ? ViewerKind::Text : ViewerKind::Xml)) return true;
  ui_.showMessage("Creation of viewer subprocess failed", MessageIcon::Warning);
  return false;
}

bool Document::exportAndView() { return exportMatrix() && viewExported(); }

bool Document::exportHordes() {
  if (!matrix_) return false;
  ExportValues values;
  if (!askExportValues(values)) return false;
  const std::string& destination = values.file;
  AtomicFile out;
  const bool destinationOpen = out.open(destination);
  setModified();
  if (!destinationOpen) {
    setError("Can not open file %s", pathForDisplay(destination).c_str());
    return showFailure();
  }
  fileRecord_.exportName = destination;
  fileRecord_.exportFormat = values.format;
  const bool table = values.format != ExportFormat::Symbolic;
  const bool xml = !table && !isTextDestination(destination);
  const ExportTexts texts = exportTexts(values.format, destination);
  const char* status = table || xml ? texts.heading : "Creating Korva file...";
  BusyScope busy(ui_, status);

  // Text and tables go straight to the destination and follow "Export
  // reduced Hordes"; XML goes through the temporary file and follows
  // "Export reduced assertions". The asymmetry is deliberate.
  std::vector<const Assertion*> labels;
  std::vector<const Assertion*> rows;
  hordeRows(*matrix_,
            xml ? values.exportReducedAssertions && values.reducedHordesAvailable : values.exportReducedHordes, labels,
            rows);
  bool written;
  if (table) {
    console_.print("%s %s ...", texts.saving, pathForDisplay(destination).c_str());
    written = writeTable(out.stream(), values.format, *matrix_, labels, rows, destination);
  } else if (!xml) {
    written = WriteSymbolicRows(out.stream(), *matrix_, labels, rows, &console_);
  } else {
    ExportTemporaryFile temporary;
    if (!temporary.open()) {
      ui_.showMessage("Can not open temporary file.", MessageIcon::Warning);
      finishCommand();
      return false;
    }
    written = WriteSymbolicRows(temporary.stream(), *matrix_, labels, rows, &console_);
    console_.print("[done]");
    if (!written || !temporary.finishWriting()) return showFailure();
    symlib::SymbolicFile model;
    if (!temporary.readBack(model, console_)) return showFailure();
    console_.print("saving XML file %s ...", pathForDisplay(destination).c_str());
    written = writeModel(model, out.stream(), true, destination);
  }
  written = written && out.commit();
  console_.print("[done] - Finished");
  if (!written) return showFailure();
  finishCommand();
  return true;
}

bool Document::exportHordesAndView() { return exportHordes() && viewExported(); }

}  // namespace velda
