#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "common/ConsoleLog.h"
#include "document/CommandTable.h"
#include "document/DialogChecks.h"
#include "document/UserInterface.h"
#include "document/project/FileRecord.h"

namespace velda {

class Connection;
class SymbolicMatrix;
class DocumentMetadata;
class ViewFiles;

// The project document: owns the matrix, the database connection, the
// console, the file record and the metadata, and carries out every command
// through its user interface. One per main window (or per velda-cli run).
//
// Every command returns true when it did what it was asked and false when
// it failed or was cancelled; the user has been told why (or nothing, for a
// cancelled dialog).
class Document {
 public:
  explicit Document(UserInterface& ui);
  // Deletes the view files from disk and closes the connection.
  ~Document();
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  // State.
  SymbolicMatrix* matrix() { return matrix_.get(); }
  const SymbolicMatrix* matrix() const { return matrix_.get(); }
  ConsoleLog& console() { return console_; }
  const ConsoleLog& console() const { return console_; }
  Connection* connection() const { return connection_.get(); }
  const FileRecord& fileRecord() const { return fileRecord_; }
  // "VELDA", or "VELDA - <file title>" once saved or loaded.
  std::string title() const;
  bool isModified() const { return modified_; }
  bool metadataLoaded() const { return metadataLoaded_; }
  const std::string& metadataFileName() const { return metadataFileName_; }
  const DocumentMetadata& metadata() const { return *metadata_; }

  // What the enabled-when tests read, and the test itself.
  DocumentState state() const;
  bool isEnabled(int32_t commandId) const { return isCommandEnabled(commandId, state()); }

  // Runs the command with this number if the document carries it out and
  // it is enabled. Commands that only place things on screen (toolbars,
  // panels, help, about, home page) are the frame's and return false here.
  // Runs under guardMemory.
  [[nodiscard]] bool execute(int32_t commandId);

  // Runs a command so that memory running out anywhere inside it ends the
  // command with "Memory allocation failed" (warning icon) and false,
  // instead of leaving through the caller's event loop. Every entry point
  // of the front ends goes through here.
  [[nodiscard]] bool guardMemory(const std::function<bool()>& command);

  // File.
  [[nodiscard]] bool connect(const std::string& connectionString);
  [[nodiscard]] bool disconnect();
  [[nodiscard]] bool newFromDatabase();
  [[nodiscard]] bool open();
  // Open without the file dialog: the project at `path` (and its metadata
  // unless ignored), after the usual save question.
  [[nodiscard]] bool openFile(const std::string& path, bool ignoreMetadata);
  [[nodiscard]] bool save();
  [[nodiscard]] bool saveAs();
  [[nodiscard]] bool newByJoin();
  [[nodiscard]] bool exportMatrix();
  [[nodiscard]] bool exportAndView();
  [[nodiscard]] bool exportHordes();
  [[nodiscard]] bool exportHordesAndView();
  // Asks to save modified data; false keeps everything (and the program
  // running).
  [[nodiscard]] bool closeData();

  // Modify.
  [[nodiscard]] bool addSingleValuedVariables();
  [[nodiscard]] bool addSetValuedVariable();
  [[nodiscard]] bool removeVariables();
  [[nodiscard]] bool createTaxonomy();
  [[nodiscard]] bool removeTaxonomies();
  [[nodiscard]] bool addDependence();
  [[nodiscard]] bool reduceAssertions();
  [[nodiscard]] bool divideAssertions();
  [[nodiscard]] bool reduceHordes();
  [[nodiscard]] bool editVariableProperties();

  // View.
  enum class Table { Individuals, Assertions, Hordes, ReducedAssertions, ReducedHordes };
  [[nodiscard]] bool viewTable(Table table);
  [[nodiscard]] bool viewTaxonomies();
  [[nodiscard]] bool viewDependences();
  [[nodiscard]] bool viewVolumeMatrix();

  // Window.
  void clearConsole();
  [[nodiscard]] bool saveConsole();
  void refreshDisplays();

 private:
  [[nodiscard]] bool executeEnabled(int32_t commandId);
  [[nodiscard]] bool save(bool askForName);
  void loadMetadata(const std::string& name, bool ignore);
  // The three lines that describe the matrix after Open (with the
  // individual count) or New by join (assertions only).
  void printSummary(bool withIndividuals);
  [[nodiscard]] bool addVariables(bool setValued);
  // Previews or applies a dependence inside the progress dialog; the
  // step's result, -1 when it was cancelled.
  [[nodiscard]] int withRuleProgress(const std::function<int()>& step);
  // Runs an operation inside the progress dialog and reports a cancel or a
  // failure with the given texts.
  [[nodiscard]] bool runLongOperation(const char* title, const char* canceledText, const char* failedText,
                                      const std::function<bool()>& operation);
  // The export dialog, from and back to the matrix's title and subtitle.
  [[nodiscard]] bool askExportValues(ExportValues& values);
  // Starts the viewer on the last export.
  [[nodiscard]] bool viewExported();
  // Says so when no connection is open.
  [[nodiscard]] bool needConnection();
  // Shows a dialog's refusal; true when there was one.
  [[nodiscard]] bool refused(const std::optional<Refusal>& refusal);
  // Shows the last-error text with the warning icon; returns false.
  [[nodiscard]] bool showFailure();
  // Makes a new matrix the document's, with the file it came from (none for
  // an extraction or a join) and whether it still has to be saved, and
  // shows it.
  void installMatrix(std::unique_ptr<SymbolicMatrix> matrix, const FileRecord& record, bool modified);
  void resetMetadata();
  void setModified() { modified_ = true; }
  void updateTitle();
  void finishCommand();

  UserInterface& ui_;
  // Routes the operations' message boxes to ui_ while the document lives.
  class MessageRoute;
  std::unique_ptr<MessageRoute> messageRoute_;
  std::unique_ptr<Connection> connection_;
  ConsoleLog console_;
  std::unique_ptr<SymbolicMatrix> matrix_;
  std::unique_ptr<ViewFiles> viewFiles_;
  bool modified_ = false;
  bool metadataLoaded_ = false;
  FileRecord fileRecord_;
  std::unique_ptr<DocumentMetadata> metadata_;
  std::string metadataFileName_ = "metatest.xml";
};

}  // namespace velda
