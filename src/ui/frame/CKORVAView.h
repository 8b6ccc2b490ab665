#pragma once

#include <memory>

#include "common/MessageBox.h"
#include "document/Document.h"
#include "document/UserInterface.h"
#include "ui/console/ConsoleView.h"
#include "ui/widgets/DataSourceLink.h"

namespace velda::ui {

// The frame's view: owns the document, draws its console, and is the
// document's user interface with real dialogs and message boxes. It is also
// the process-wide message-box target while it lives.
class CKORVAView : public ConsoleView, public UserInterface, public DataSourceLink, public MessageBoxTarget {
  Q_OBJECT

 public:
  explicit CKORVAView(QWidget* parent = nullptr);
  ~CKORVAView() override;

  Document& document() { return *document_; }

  // UserInterface (and MessageBoxTarget, for showMessage).
  Answer ask(const std::string& question, QuestionButtons buttons, MessageIcon icon) override;
  void showMessage(const std::string& text, MessageIcon icon) override;
  [[nodiscard]] bool chooseFile(const FileRequest& request, FileChoice& choice) override;
  [[nodiscard]] bool askNew(NewValues& values) override;
  [[nodiscard]] bool askAddVariables(AddVariablesValues& values, bool setValued) override;
  [[nodiscard]] bool askTaxonomy(TaxonomyValues& values) override;
  [[nodiscard]] bool askDependence(DependenceValues& values) override;
  [[nodiscard]] bool askRemoveVariables(VariableSelection& values) override;
  [[nodiscard]] bool askRemoveTaxonomies(VariableSelection& values) override;
  [[nodiscard]] bool askVariableProperties(VariablePropertiesValues& values) override;
  [[nodiscard]] bool askReduction(ReductionValues& values) override;
  [[nodiscard]] bool askDivision(DivisionValues& values) override;
  [[nodiscard]] bool askExport(ExportValues& values) override;
  [[nodiscard]] bool askJoin(JoinValues& values) override;
  bool runWithProgress(const std::string& title, const std::function<bool()>& operation, bool& cancelled) override;
  [[nodiscard]] bool startViewer(const std::string& path, ViewerKind kind) override;
  void showTaxonomies() override;
  void showDependences() override;
  void showVolumeMatrix() override;
  void setStatusText(const std::string& text) override;
  void setWaitCursor(bool on) override;
  void setTitle(const std::string& title) override;
  void clearDisplay(Display display) override;
  void refreshDisplay(Display display) override;
  void documentChanged() override;

  // DataSourceLink.
  const Connection* connection() const override;
  [[nodiscard]] bool connect(const std::string& connectionString) override;

 signals:
  void statusTextChanged(const QString& text);
  void titleChanged(const QString& title);
  void displayCleared(velda::Display display);
  void displayRefreshed(velda::Display display);
  void stateChanged();

 private:
  std::unique_ptr<Document> document_;
  MessageBoxTarget* previousMessageTarget_;
};

}  // namespace velda::ui
