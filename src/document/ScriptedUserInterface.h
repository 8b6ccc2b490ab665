#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "common/Progress.h"
#include "document/UserInterface.h"

namespace velda {

// A user interface without a display: every dialog is answered by a
// function (none: the dialog is cancelled), every question by a function
// (none: No), and what the document shows is recorded. The command-line
// program fills the functions from its arguments; tests script them.
class ScriptedUserInterface : public UserInterface, private ProgressTarget {
 public:
  template <typename Values>
  using Dialog = std::function<bool(Values&)>;

  Dialog<NewValues> onNew;
  Dialog<AddVariablesValues> onAddVariables;
  Dialog<TaxonomyValues> onTaxonomy;
  Dialog<DependenceValues> onDependence;
  Dialog<VariableSelection> onRemoveVariables;
  Dialog<VariableSelection> onRemoveTaxonomies;
  Dialog<VariablePropertiesValues> onVariableProperties;
  Dialog<ReductionValues> onReduction;
  Dialog<DivisionValues> onDivision;
  Dialog<ExportValues> onExport;
  Dialog<JoinValues> onJoin;
  std::function<bool(const FileRequest&, FileChoice&)> onChooseFile;
  std::function<Answer(const std::string& question)> onAsk;
  // Asked at every cancel poll of a long operation.
  std::function<bool()> onCancelPoll;
  std::function<bool(const std::string& path, ViewerKind kind)> onStartViewer;

  struct Message {
    std::string text;
    MessageIcon icon;
  };
  std::vector<Message> messages;
  std::vector<std::string> questions;
  std::vector<std::string> statusTexts;
  std::vector<std::string> progressTitles;
  std::vector<std::string> progressLines;
  std::vector<std::string> shownDialogs;  // "taxonomies", "dependences", "volume matrix"
  std::string title = "VELDA";

  Answer ask(const std::string& question, QuestionButtons buttons, MessageIcon icon) override;
  void showMessage(const std::string& text, MessageIcon icon) override;
  bool chooseFile(const FileRequest& request, FileChoice& choice) override;
  bool askNew(NewValues& values) override { return answer(onNew, values); }
  bool askAddVariables(AddVariablesValues& values, bool) override { return answer(onAddVariables, values); }
  bool askTaxonomy(TaxonomyValues& values) override { return answer(onTaxonomy, values); }
  bool askDependence(DependenceValues& values) override { return answer(onDependence, values); }
  bool askRemoveVariables(VariableSelection& values) override { return answer(onRemoveVariables, values); }
  bool askRemoveTaxonomies(VariableSelection& values) override { return answer(onRemoveTaxonomies, values); }
  bool askVariableProperties(VariablePropertiesValues& values) override { return answer(onVariableProperties, values); }
  bool askReduction(ReductionValues& values) override { return answer(onReduction, values); }
  bool askDivision(DivisionValues& values) override { return answer(onDivision, values); }
  bool askExport(ExportValues& values) override { return answer(onExport, values); }
  bool askJoin(JoinValues& values) override { return answer(onJoin, values); }
  int runWithProgress(const std::string& title, const std::function<int()>& operation, bool& cancelled) override;
  bool startViewer(const std::string& path, ViewerKind kind) override;
  void showTaxonomies() override { shownDialogs.push_back("taxonomies"); }
  void showDependences() override { shownDialogs.push_back("dependences"); }
  void showVolumeMatrix() override { shownDialogs.push_back("volume matrix"); }
  void setStatusText(const std::string& text) override;
  void setTitle(const std::string& text) override { title = text; }

  // Cancels every dialog and answers No to every question from now on.
  void clearAnswers();

  // The last message's text, empty when none was shown.
  std::string lastMessage() const { return messages.empty() ? std::string() : messages.back().text; }

 protected:
  // The progress lines and cancel polls of a running long operation.
  void setLine1(const std::string& text) override;
  void setLine2(const std::string& text) override;
  void enableCancel(bool) override {}
  bool cancelRequested() override;

 private:
  template <typename Values>
  static bool answer(const Dialog<Values>& dialog, Values& values) {
    return dialog && dialog(values);
  }

  bool cancelled_ = false;
};

}  // namespace velda
