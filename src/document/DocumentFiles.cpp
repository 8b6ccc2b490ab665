// The document's file commands: close, save, save as, open.
#include <cstdio>
#include <new>

#include "common/LastError.h"
#include "common/PathText.h"
#include "common/SafeFiles.h"
#include "document/BusyScope.h"
#include "document/Document.h"
#include "document/export/DocumentMetadata.h"
#include "document/project/ProjectFile.h"
#include "model/SymbolicMatrix.h"

namespace velda {

namespace {

FileRequest projectFileRequest(FileRequest::Mode mode) {
  FileRequest request;
  request.mode = mode;
  request.filter = "VELDA file (*.gaj)";
  request.defaultSuffix = "gaj";
  request.offerIgnoreMetadata = mode == FileRequest::Mode::Open;
  return request;
}

}  // namespace

void Document::printSummary(bool withIndividuals) {
  const SymbolicMatrix& m = *matrix_;
  console_.print("Symbolic data matrix is composed by:");
  console_.print("%d variables (%d qualitatives, %d quantitatives)", static_cast<int>(m.variableCount()),
                 static_cast<int>(m.categoricalCount()), static_cast<int>(m.quantitativeCount()));
  if (withIndividuals) {
    console_.print("%d assertions build from %d individuals", static_cast<int>(m.assertionCount()),
                   static_cast<int>(m.individualCount()));
  } else {
    console_.print("%d assertions", static_cast<int>(m.assertionCount()));
  }
}

bool Document::closeData() {
  if (!matrix_) return true;
  if (modified_) {
    const Answer answer =
        ui_.ask("Do you want to save current data ?", QuestionButtons::YesNoCancel, MessageIcon::Warning);
    if (answer == Answer::Cancel) return false;
    if (answer == Answer::Yes && !save(false)) return false;
  }
  matrix_.reset();
  ui_.clearDisplay(Display::Variables);
  ui_.clearDisplay(Display::Individuals);
  ui_.clearDisplay(Display::Dependences);
  modified_ = false;
  fileRecord_.valid = false;
  resetMetadata();
  metadataFileName_ = "metatest.xml";
  console_.clear();
  updateTitle();
  finishCommand();
  return true;
}

bool Document::save() { return save(false); }
bool Document::saveAs() { return save(true); }

bool Document::save(bool askForName) {
  if (!matrix_) return false;
  FileRecord record = fileRecord_;
  if (askForName || !fileRecord_.valid) {
    FileChoice choice;
    if (!ui_.chooseFile(projectFileRequest(FileRequest::Mode::Save), choice)) return false;
    record = FileRecord::fromPath(choice.path);
  }
  std::string metadataFileName = record.path + ".xml";
  ProjectSave saved;
  {
    BusyScope busy(ui_, "Saving file...");
    saved = saveProject(record.path, *matrix_);
  }
  if (saved == ProjectSave::CannotOpen) {
    ui_.showMessage(lastError(), MessageIcon::Warning);
    return false;
  }
  if (saved == ProjectSave::Failed) {
    ui_.showMessage(lastError(), MessageIcon::None);
    return false;
  }
  modified_ = false;
  fileRecord_ = std::move(record);
  metadataFileName_ = std::move(metadataFileName);
  // The project is saved: from here on, running out of memory costs only
  // the title or the metadata file, and says so.
  try {
    updateTitle();
    if (!metadata_->write(metadataFileName_, *matrix_)) ui_.showMessage(lastError(), MessageIcon::Warning);
  } catch (const std::bad_alloc&) {
    ui_.showMessage("Memory allocation failed", MessageIcon::Warning);
  }
  finishCommand();
  return true;
}

bool Document::open() {
  if (!closeData()) return false;
  FileChoice choice;
  if (!ui_.chooseFile(projectFileRequest(FileRequest::Mode::Open), choice)) return false;
  return openFile(choice.path, choice.ignoreMetadata);
}

bool Document::openFile(const std::string& path, bool ignoreMetadata) {
  if (!closeData()) return false;
  std::FILE* file = openRegularFile(path);
  if (!file) {
    setError("Can not open file %s", pathForDisplay(path).c_str());
    ui_.showMessage(lastError(), MessageIcon::Warning);
    return false;
  }
  std::unique_ptr<SymbolicMatrix> loaded;
  {
    BusyScope busy(ui_, "Loading file...");
    loaded = readProject(file);
  }
  std::fclose(file);
  loadMetadata(path + ".xml", ignoreMetadata);
  if (!loaded) {
    ui_.showMessage("Load failed", MessageIcon::None);
    finishCommand();
    return false;
  }
  installMatrix(std::move(loaded), FileRecord::fromPath(path), false);
  printSummary(true);
  finishCommand();
  return true;
}

void Document::loadMetadata(const std::string& name, bool ignore) {
  metadataFileName_ = name;
  std::FILE* probe = ignore ? nullptr : openRegularFile(name);
  if (!probe) {
    resetMetadata();
    console_.print("MetaData not found or ignored");
    return;
  }
  std::printf("Parsing the Metadata file %s\n", pathForDisplay(name).c_str());
  std::fflush(stdout);
  if (!metadata_->load(probe, name)) {
    resetMetadata();
    console_.print("MetaData not found or ignored");
    return;
  }
  metadataLoaded_ = true;
  console_.print("MetaData Loaded and transfered");
}

}  // namespace velda
