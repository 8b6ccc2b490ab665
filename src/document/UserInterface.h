#pragma once

#include <functional>
#include <string>

#include "common/MessageBox.h"
#include "document/CommandValues.h"

namespace velda {

enum class Answer { Yes, No, Cancel };
enum class QuestionButtons { YesNo, YesNoCancel };
enum class Display { Variables, Individuals, Dependences };
enum class ViewerKind { Text, Xml };

// Everything the document needs from whoever shows it: the Qt view, the
// command-line program or a test's script. The document never talks to the
// user in any other way.
class UserInterface {
 public:
  virtual ~UserInterface() = default;

  // Questions and messages.
  virtual Answer ask(const std::string& question, QuestionButtons buttons, MessageIcon icon) = 0;
  virtual void showMessage(const std::string& text, MessageIcon icon) = 0;

  // A standard file dialog; false on Cancel.
  [[nodiscard]] virtual bool chooseFile(const FileRequest& request, FileChoice& choice) = 0;

  // Each command's dialog: the values arrive with their initial contents and
  // go back changed; false on Cancel. A dialog may check the values with
  // DialogChecks before closing; the document checks them again.
  [[nodiscard]] virtual bool askNew(NewValues& values) = 0;
  [[nodiscard]] virtual bool askAddVariables(AddVariablesValues& values, bool setValued) = 0;
  [[nodiscard]] virtual bool askTaxonomy(TaxonomyValues& values) = 0;
  [[nodiscard]] virtual bool askDependence(DependenceValues& values) = 0;
  [[nodiscard]] virtual bool askRemoveVariables(VariableSelection& values) = 0;
  [[nodiscard]] virtual bool askRemoveTaxonomies(VariableSelection& values) = 0;
  [[nodiscard]] virtual bool askVariableProperties(VariablePropertiesValues& values) = 0;
  [[nodiscard]] virtual bool askReduction(ReductionValues& values) = 0;
  [[nodiscard]] virtual bool askDivision(DivisionValues& values) = 0;
  [[nodiscard]] virtual bool askExport(ExportValues& values) = 0;
  [[nodiscard]] virtual bool askJoin(JoinValues& values) = 0;

  // Runs a long operation inside a progress dialog titled `title`: the
  // implementation installs its progress target for the duration (see
  // ScopedProgressTarget), runs the operation to its end, and reports
  // whether Cancel was pressed. Returns the operation's result.
  virtual bool runWithProgress(const std::string& title, const std::function<bool()>& operation, bool& cancelled) = 0;

  // Starts an external viewer on a file without waiting; false when none
  // could be started.
  [[nodiscard]] virtual bool startViewer(const std::string& path, ViewerKind kind) = 0;

  // The tree and drawing dialogs that show the matrix without changing it.
  virtual void showTaxonomies() = 0;
  virtual void showDependences() = 0;
  virtual void showVolumeMatrix() = 0;

  // Feedback while commands run; each has a silent default.
  virtual void setStatusText(const std::string& /*text*/) {}
  virtual void setWaitCursor(bool /*on*/) {}
  virtual void setTitle(const std::string& /*title*/) {}
  virtual void clearDisplay(Display /*display*/) {}
  virtual void refreshDisplay(Display /*display*/) {}
  // Called after every command, so enabled states can be updated.
  virtual void documentChanged() {}
};

}  // namespace velda
