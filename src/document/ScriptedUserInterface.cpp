#include "document/ScriptedUserInterface.h"

namespace velda {

void ScriptedUserInterface::clearAnswers() {
  onNew = nullptr;
  onAddVariables = nullptr;
  onTaxonomy = nullptr;
  onDependence = nullptr;
  onRemoveVariables = nullptr;
  onRemoveTaxonomies = nullptr;
  onVariableProperties = nullptr;
  onReduction = nullptr;
  onDivision = nullptr;
  onExport = nullptr;
  onJoin = nullptr;
  onChooseFile = nullptr;
  onAsk = nullptr;
  onCancelPoll = nullptr;
  onStartViewer = nullptr;
}

Answer ScriptedUserInterface::ask(const std::string& question, QuestionButtons, MessageIcon) {
  questions.push_back(question);
  return onAsk ? onAsk(question) : Answer::No;
}

void ScriptedUserInterface::showMessage(const std::string& text, MessageIcon icon) { messages.push_back({text, icon}); }

bool ScriptedUserInterface::chooseFile(const FileRequest& request, FileChoice& choice) {
  return onChooseFile && onChooseFile(request, choice);
}

int ScriptedUserInterface::runWithProgress(const std::string& title, const std::function<int()>& operation,
                                           bool& cancelled) {
  progressTitles.push_back(title);
  cancelled_ = false;
  int result;
  {
    ScopedProgressTarget target(this);
    result = operation();
  }
  // A Cancel pressed after the operation's last poll still counts.
  cancelRequested();
  cancelled = cancelled_;
  return result;
}

bool ScriptedUserInterface::startViewer(const std::string& path, ViewerKind kind) {
  return onStartViewer && onStartViewer(path, kind);
}

void ScriptedUserInterface::setStatusText(const std::string& text) {
  if (!text.empty()) statusTexts.push_back(text);
}

void ScriptedUserInterface::setLine1(const std::string& text) { progressLines.push_back(text); }
void ScriptedUserInterface::setLine2(const std::string& text) { progressLines.push_back(text); }

bool ScriptedUserInterface::cancelRequested() {
  if (onCancelPoll && onCancelPoll()) cancelled_ = true;
  return cancelled_;
}

}  // namespace velda
