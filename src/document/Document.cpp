#include "document/Document.h"

#include <new>

#include "common/AtomicFile.h"
#include "common/LastError.h"
#include "common/PathText.h"
#include "db/Connection.h"
#include "document/BusyScope.h"
#include "document/export/DocumentMetadata.h"
#include "document/view/ViewFiles.h"
#include "model/SymbolicMatrix.h"

namespace velda {

class Document::MessageRoute final : public MessageBoxTarget {
 public:
  explicit MessageRoute(UserInterface& ui) : ui_(ui), previous_(messageBoxTarget()) { setMessageBoxTarget(this); }
  ~MessageRoute() override { setMessageBoxTarget(previous_); }
  void showMessage(const std::string& text, MessageIcon icon) override { ui_.showMessage(text, icon); }

 private:
  UserInterface& ui_;
  MessageBoxTarget* previous_;
};

Document::Document(UserInterface& ui)
    : ui_(ui),
      messageRoute_(std::make_unique<MessageRoute>(ui)),
      viewFiles_(std::make_unique<ViewFiles>()),
      metadata_(std::make_unique<DocumentMetadata>()) {}

Document::~Document() = default;

std::string Document::title() const {
  return fileRecord_.valid ? "VELDA - " + pathForDisplay(fileRecord_.fileTitle) : "VELDA";
}

DocumentState Document::state() const {
  DocumentState s;
  s.connectionOpen = connection_ != nullptr;
  if (!matrix_) return s;
  const SymbolicMatrix& m = *matrix_;
  s.hasData = true;
  s.variableCount = static_cast<int32_t>(m.variableCount());
  s.cellCount = static_cast<int32_t>(m.cellCount());
  s.qualitativeCount = static_cast<int32_t>(m.categoricalCount());
  s.quantitativeCount = static_cast<int32_t>(m.quantitativeCount());
  s.taxonomyCount = m.taxonomyCount();
  s.possibleMothers = static_cast<int32_t>(m.motherCandidateCount());
  s.dependenceCount = static_cast<int32_t>(m.rules.size());
  s.individualCount = static_cast<int32_t>(m.individualCount());
  s.reducedAssertionCount = static_cast<int32_t>(m.reducedAssertions.size());
  s.hordeCount = static_cast<int32_t>(m.hordes.size());
  for (const Horde& horde : m.hordes)
    if (!horde.reducedClasses.empty()) ++s.reducedHordeCount;
  return s;
}

bool Document::guardMemory(const std::function<bool()>& command) {
  try {
    return command();
  } catch (const std::bad_alloc&) {
    ui_.showMessage("Memory allocation failed", MessageIcon::Warning);
    finishCommand();
    return false;
  }
}

bool Document::execute(int32_t id) {
  if (!isEnabled(id)) return false;
  return guardMemory([this, id] { return executeEnabled(id); });
}

bool Document::executeEnabled(int32_t id) {
  switch (id) {
    case ID_FILE_NEW: return newFromDatabase();
    case ID_FILE_OPEN: return open();
    case ID_FILE_SAVE: return save();
    case ID_FILE_SAVE_AS: return saveAs();
    case ID_NEW_BY_JOIN: return newByJoin();
    case ID_EXPORT: return exportMatrix();
    case ID_EXPORT_HORDES: return exportHordesAndView();
    case ID_EXPORT_AND_VIEW: return exportAndView();
    case ID_DISCONNECT: return disconnect();
    case ID_APP_EXIT: return closeData();
    case ID_ADD_SINGLE_VALUED_VARIABLES: return addSingleValuedVariables();
    case ID_ADD_SET_VALUED_VARIABLE: return addSetValuedVariable();
    case ID_REMOVE_VARIABLES: return removeVariables();
    case ID_CREATE_TAXONOMY: return createTaxonomy();
    case ID_REMOVE_TAXONOMIES: return removeTaxonomies();
    case ID_ADD_DEPENDENCE: return addDependence();
    case ID_REDUCE_ASSERTIONS: return reduceAssertions();
    case ID_DIVIDE_ASSERTIONS: return divideAssertions();
    case ID_REDUCE_HORDES: return reduceHordes();
    case ID_VARIABLE_PROPERTIES: return editVariableProperties();
    case ID_VIEW_INDIVIDUALS: return viewTable(Table::Individuals);
    case ID_VIEW_ASSERTIONS: return viewTable(Table::Assertions);
    case ID_VIEW_HORDES: return viewTable(Table::Hordes);
    case ID_VIEW_REDUCED_ASSERTIONS: return viewTable(Table::ReducedAssertions);
    case ID_VIEW_REDUCED_HORDES: return viewTable(Table::ReducedHordes);
    case ID_VIEW_TAXONOMIES: return viewTaxonomies();
    case ID_VIEW_DEPENDENCES: return viewDependences();
    case ID_VIEW_VOLUME_MATRIX: return viewVolumeMatrix();
    case ID_CLEAR_CONSOLE: clearConsole(); return true;
    case ID_SAVE_CONSOLE: return saveConsole();
    case ID_REFRESH_DISPLAYS: refreshDisplays(); return true;
    default: return false;
  }
}

bool Document::connect(const std::string& connectionString) {
  std::unique_ptr<Connection> connection = Connection::open(connectionString);
  if (!connection) {
    ui_.showMessage(lastError(), MessageIcon::Warning);
    return false;
  }
  connection_ = std::move(connection);
  ui_.documentChanged();
  return true;
}

bool Document::disconnect() {
  connection_.reset();
  ui_.documentChanged();
  return true;
}

void Document::clearConsole() { console_.clear(); }

bool Document::saveConsole() {
  if (console_.count() == 0) return false;
  FileRequest request;
  request.mode = FileRequest::Mode::Save;
  request.filter = "Text file (*.txt)";
  request.defaultSuffix = "txt";
  FileChoice choice;
  if (!ui_.chooseFile(request, choice)) return false;
  AtomicFile file;
  if (file.open(choice.path)) {
    for (const std::string& line : console_.lines()) file.stream() << line << '\n';
    if (file.commit()) return true;
  }
  ui_.showMessage(lastError(), MessageIcon::Warning);
  return false;
}

void Document::refreshDisplays() {
  if (!matrix_) return;
  ui_.refreshDisplay(Display::Individuals);
  ui_.refreshDisplay(Display::Variables);
  if (!matrix_->rules.empty()) ui_.refreshDisplay(Display::Dependences);
}

void Document::updateTitle() { ui_.setTitle(title()); }

void Document::finishCommand() { ui_.documentChanged(); }

void Document::resetMetadata() {
  metadata_->reset();
  metadataLoaded_ = false;
}

void Document::installMatrix(std::unique_ptr<SymbolicMatrix> matrix, const FileRecord& record, bool modified) {
  matrix_ = std::move(matrix);
  fileRecord_ = record;
  modified_ = modified;
  // Without the assertions in number order the tables cannot be shown.
  if (matrix_->indexAssertions()) refreshDisplays();
  updateTitle();
}

}  // namespace velda
