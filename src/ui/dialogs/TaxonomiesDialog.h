#pragma once

#include <QDialog>

class QListWidget;
class QTreeWidget;

namespace velda {
class SymbolicMatrix;
}

namespace velda::ui {

// "Taxonomies": the variables that have a taxonomy, and the chosen one's tree.
class TaxonomiesDialog : public QDialog {
  Q_OBJECT

 public:
  explicit TaxonomiesDialog(const SymbolicMatrix& matrix, QWidget* parent = nullptr);

  QListWidget* variableList() const { return variables_; }
  QTreeWidget* tree() const { return tree_; }

 private:
  void showChosen();

  const SymbolicMatrix& matrix_;
  QListWidget* variables_;
  QTreeWidget* tree_;
};

}  // namespace velda::ui
