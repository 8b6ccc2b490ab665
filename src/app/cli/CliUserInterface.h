#pragma once

#include "document/ScriptedUserInterface.h"

namespace velda {
class Document;
}

namespace velda::cli {

// The document's user interface in velda-cli: each command sets up the
// dialog answers from its arguments; messages go to standard error, viewed
// tables and files to standard output, progress to the terminal. Questions
// are answered without asking: the save question No, the dependence
// confirmation No unless --yes, the taxonomy replacement Yes.
class CliUserInterface final : public ScriptedUserInterface {
 public:
  CliUserInterface();

  void attach(const Document& document) { document_ = &document; }
  // Whether the next dependence confirmation is answered Yes.
  bool confirmDependence = false;

  void showMessage(const std::string& text, MessageIcon icon) override;
  bool runWithProgress(const std::string& title, const std::function<bool()>& operation, bool& cancelled) override;
  void showTaxonomies() override;
  void showDependences() override;
  void showVolumeMatrix() override;

  // Whether the volume-matrix report shows the matrix before reduction.
  bool volumeMatrixBefore = false;

  // Forgets the dialog answers of the previous command.
  void resetScript();

 private:
  const Document* document_ = nullptr;
};

// Copies a file to standard output; false when it cannot be read.
[[nodiscard]] bool printFile(const std::string& path);

}  // namespace velda::cli
