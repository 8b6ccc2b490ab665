#include "ui/widgets/WholeLines.h"

#include <QAbstractItemView>
#include <QHeaderView>
#include <QHelpEvent>
#include <QToolTip>
#include <QTreeView>

namespace velda::ui {

namespace {

// Answers the viewport's tooltip requests with the line under the mouse,
// unless the line carries a tooltip of its own.
class LineToolTip : public QObject {
 public:
  explicit LineToolTip(QAbstractItemView* view) : QObject(view), view_(view) {}

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::ToolTip) return QObject::eventFilter(watched, event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const QModelIndex index = view_->indexAt(help->pos());
    QString text = index.data(Qt::ToolTipRole).toString();
    if (text.isEmpty()) text = index.data(Qt::DisplayRole).toString();
    if (text.isEmpty()) {
      QToolTip::hideText();
    } else {
      QToolTip::showText(help->globalPos(), text, view_->viewport(), view_->visualRect(index));
    }
    return true;
  }

 private:
  QAbstractItemView* view_;
};

}  // namespace

void showWholeLines(QAbstractItemView* view) {
  if (auto* tree = qobject_cast<QTreeView*>(view)) {
    tree->header()->setStretchLastSection(false);
    tree->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  }
  view->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  view->setTextElideMode(Qt::ElideNone);
  view->viewport()->installEventFilter(new LineToolTip(view));
}

}  // namespace velda::ui
