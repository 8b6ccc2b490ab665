#pragma once

#include <QDialog>

class QTreeWidget;

namespace velda {
class SymbolicMatrix;
}

namespace velda::ui {

// "View dependences": the rules, and the variables tied to the chosen rule
// group (its mother with its daughters).
class DependencesDialog : public QDialog {
  Q_OBJECT

 public:
  explicit DependencesDialog(const SymbolicMatrix& matrix, QWidget* parent = nullptr);

  QTreeWidget* definitions() const { return definitions_; }
  QTreeWidget* hierarchy() const { return hierarchy_; }

 private:
  void showChosen();

  const SymbolicMatrix& matrix_;
  QTreeWidget* definitions_;
  QTreeWidget* hierarchy_;
};

}  // namespace velda::ui
