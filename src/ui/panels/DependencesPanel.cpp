#include "ui/panels/DependencesPanel.h"

#include <QTreeWidget>

#include "ui/panels/MatrixTrees.h"
#include "ui/widgets/WholeLines.h"

namespace velda::ui {

DependencesPanel::DependencesPanel(QWidget* parent) : QDockWidget(QStringLiteral("Dependences"), parent) {
  setObjectName(QStringLiteral("DependencesPanel"));
  tree_ = new QTreeWidget(this);
  showWholeLines(tree_);
  tree_->setHeaderHidden(true);
  setWidget(tree_);
  clear();
}

void DependencesPanel::clear() {
  tree_->clear();
  new QTreeWidgetItem(tree_, QStringList{QStringLiteral("No dependence set")});
}

void DependencesPanel::fill(const SymbolicMatrix& matrix) { fillDependenceTree(tree_, matrix); }

}  // namespace velda::ui
