#pragma once

#include <QDockWidget>

class QStackedWidget;
class QTreeWidget;

namespace velda {
class SymbolicMatrix;
}

namespace velda::ui {

// "Variables display": every variable under its kind, the multinominal ones
// with their view type.
class VariablesPanel : public QDockWidget {
  Q_OBJECT

 public:
  explicit VariablesPanel(QWidget* parent = nullptr);

  void clear();
  void fill(const SymbolicMatrix& matrix);
  QTreeWidget* tree() const { return tree_; }
  bool isEmptyShown() const;

 private:
  QStackedWidget* pages_;
  QTreeWidget* tree_;
};

}  // namespace velda::ui
