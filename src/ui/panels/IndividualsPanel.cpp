#include "ui/panels/IndividualsPanel.h"

#include <QListView>
#include <QStackedWidget>

#include "ui/panels/EmptyPage.h"
#include "ui/panels/IndividualListModel.h"
#include "ui/widgets/WholeLines.h"

namespace velda::ui {

IndividualsPanel::IndividualsPanel(QWidget* parent) : QDockWidget(QStringLiteral("Individuals display"), parent) {
  setObjectName(QStringLiteral("IndividualsPanel"));
  model_ = new IndividualListModel(this);
  view_ = new QListView(this);
  showWholeLines(view_);
  view_->setModel(model_);
  // Equal rows let the view lay out a million items without measuring each.
  view_->setUniformItemSizes(true);
  pages_ = new QStackedWidget(this);
  pages_->addWidget(new EmptyPage(pages_));
  pages_->addWidget(view_);
  setWidget(pages_);
}

bool IndividualsPanel::isEmptyShown() const { return pages_->currentIndex() == 0; }

void IndividualsPanel::clear() {
  model_->setMatrix(nullptr);
  pages_->setCurrentIndex(0);
}

void IndividualsPanel::fill(const SymbolicMatrix& matrix) {
  model_->setMatrix(&matrix);
  pages_->setCurrentIndex(1);
}

}  // namespace velda::ui
