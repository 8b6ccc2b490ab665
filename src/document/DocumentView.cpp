// The View commands and the refresh of assertions that they need.
#include <cstdio>

#include "common/FileStream.h"
#include "common/LastError.h"
#include "common/PathText.h"
#include "common/SafeFiles.h"
#include "document/BusyScope.h"
#include "document/Document.h"
#include "document/view/MatrixReports.h"
#include "document/view/ViewFiles.h"
#include "model/SymbolicMatrix.h"

namespace velda {

namespace {

ViewFiles::Kind fileKindOf(Document::Table table) {
  switch (table) {
    case Document::Table::Individuals: return ViewFiles::Individuals;
    case Document::Table::Assertions:
    case Document::Table::Hordes: return ViewFiles::Groups;
    case Document::Table::ReducedAssertions:
    case Document::Table::ReducedHordes: return ViewFiles::Reduced;
  }
  return ViewFiles::Individuals;
}

void writeTable(const SymbolicMatrix& matrix, Document::Table table, std::ostream& out) {
  switch (table) {
    case Document::Table::Individuals: writeIndividualsTable(matrix, out); return;
    case Document::Table::Assertions: writeAssertionsTable(matrix, out); return;
    case Document::Table::Hordes: writeHordesTable(matrix, false, out); return;
    case Document::Table::ReducedAssertions: writeReducedAssertionsTable(matrix, out); return;
    case Document::Table::ReducedHordes: writeHordesTable(matrix, true, out); return;
  }
}

}  // namespace

bool Document::viewTable(Table table) {
  if (!matrix_) return false;
  const ViewFiles::Kind kind = fileKindOf(table);
  const std::string name = viewFiles_->nameFor(kind);
  std::FILE* file = name.empty() ? nullptr : openFixedNameFile(name.c_str());
  if (!file) {
    viewFiles_->forget(kind);
    ui_.showMessage("Creation of temporary file failed", MessageIcon::Warning);
    return false;
  }
  bool written;
  {
    BusyScope busy(ui_, "Creating file...");
    FileOutputStream out(file);
    writeTable(*matrix_, table, out);
    written = static_cast<bool>(out.flush());
    written = std::fclose(file) == 0 && written;
  }
  if (!written) {
    setError("Can not write file %s", pathForDisplay(name).c_str());
    ui_.showMessage(lastError(), MessageIcon::Warning);
    return false;
  }
  if (ui_.startViewer(name, ViewerKind::Text)) return true;
  ui_.showMessage("Creation of viewer subprocess failed", MessageIcon::Warning);
  return false;
}

bool Document::viewTaxonomies() {
  if (!matrix_) return false;
  ui_.showTaxonomies();
  return true;
}

bool Document::viewDependences() {
  if (!matrix_) return false;
  ui_.showDependences();
  return true;
}

bool Document::viewVolumeMatrix() {
  if (!matrix_) return false;
  ui_.showVolumeMatrix();
  return true;
}

}  // namespace velda
