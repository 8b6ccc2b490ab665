#pragma once

#include <QDockWidget>

class QTreeWidget;

namespace velda {
class SymbolicMatrix;
}

namespace velda::ui {

// "Dependences": the variables by dependence, or "No dependence set".
class DependencesPanel : public QDockWidget {
  Q_OBJECT

 public:
  explicit DependencesPanel(QWidget* parent = nullptr);

  void clear();
  void fill(const SymbolicMatrix& matrix);
  QTreeWidget* tree() const { return tree_; }

 private:
  QTreeWidget* tree_;
};

}  // namespace velda::ui
