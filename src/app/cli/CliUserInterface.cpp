#include "app/cli/CliUserInterface.h"

#include <cstdio>
#include <iostream>

#include "app/cli/TerminalProgress.h"
#include "document/Document.h"
#include "document/view/MatrixReports.h"

namespace velda::cli {

bool printFile(const std::string& path) {
  std::FILE* file = std::fopen(path.c_str(), "rb");
  if (!file) return false;
  std::fflush(stdout);
  char buffer[65536];
  size_t count;
  while ((count = std::fread(buffer, 1, sizeof buffer, file)) > 0) std::fwrite(buffer, 1, count, stdout);
  std::fclose(file);
  std::fflush(stdout);
  return true;
}

CliUserInterface::CliUserInterface() { resetScript(); }

void CliUserInterface::resetScript() {
  clearAnswers();
  confirmDependence = false;
  volumeMatrixBefore = false;
  onAsk = [this](const std::string& question) {
    if (question.rfind("Some values will be replaced by NA", 0) == 0)
      return confirmDependence ? Answer::Yes : Answer::No;
    if (question.rfind("Selected variable has already a taxonomy", 0) == 0) return Answer::Yes;
    return Answer::No;
  };
  onStartViewer = [](const std::string& path, ViewerKind) { return printFile(path); };
}

void CliUserInterface::showMessage(const std::string& text, MessageIcon icon) {
  ScriptedUserInterface::showMessage(text, icon);
  std::fflush(stdout);
  std::fprintf(stderr, "%s\n", text.c_str());
}

int CliUserInterface::runWithProgress(const std::string& title, const std::function<int()>& operation,
                                      bool& cancelled) {
  progressTitles.push_back(title);
  TerminalProgress progress;
  int result;
  {
    ScopedProgressTarget target(&progress);
    result = operation();
  }
  cancelled = progress.cancelled();
  return result;
}

void CliUserInterface::showTaxonomies() {
  if (!document_ || !document_->matrix()) return;
  writeTaxonomiesReport(*document_->matrix(), std::cout);
  std::cout.flush();
}

void CliUserInterface::showDependences() {
  if (!document_ || !document_->matrix()) return;
  writeDependencesReport(*document_->matrix(), std::cout);
  std::cout.flush();
}

void CliUserInterface::showVolumeMatrix() {
  if (!document_ || !document_->matrix()) return;
  writeVolumeMatrixReport(*document_->matrix(), volumeMatrixBefore, std::cout);
  std::cout.flush();
}

}  // namespace velda::cli
