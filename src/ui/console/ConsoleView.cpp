#include "ui/console/ConsoleView.h"

#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

#include "document/CommandTable.h"
#include "ui/widgets/Latin1.h"

namespace velda::ui {

ConsoleView::ConsoleView(QWidget* parent) : QAbstractScrollArea(parent) {
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  lineHeight_ = std::max(1, QFontMetrics(font()).height());
  viewport()->setBackgroundRole(QPalette::Base);
  viewport()->setAutoFillBackground(true);
}

ConsoleView::~ConsoleView() { detach(); }

void ConsoleView::detach() {
  if (log_) log_->setListener(nullptr);
  log_ = nullptr;
}

void ConsoleView::attach(ConsoleLog& log) {
  log_ = &log;
  log_->setListener([this](ConsoleLog::Change change) { onLogChange(change); });
  updateScrollRange();
  viewport()->update();
}

QSize ConsoleView::surfaceSize() const {
  const size_t lines = log_ ? log_->count() : 0;
  return QSize(kSurfaceWidth, static_cast<int>(lines) * lineHeight_);
}

void ConsoleView::updateScrollRange() {
  const QSize surface = surfaceSize();
  const QSize visible = viewport()->size();
  horizontalScrollBar()->setRange(0, std::max(0, surface.width() - visible.width()));
  horizontalScrollBar()->setPageStep(kPageAcross);
  horizontalScrollBar()->setSingleStep(kStepAcross);
  verticalScrollBar()->setRange(0, std::max(0, surface.height() - visible.height()));
  verticalScrollBar()->setPageStep(kPageLines * lineHeight_);
  verticalScrollBar()->setSingleStep(lineHeight_);
}

// A new line moves every line up once the console is longer than the
// window, and the 4800-line cut renumbers them all; while the console is
// shorter than the window the new line lands anywhere in it. Repainting the
// whole visible part keeps the screen right in every case: only the lines
// that meet the window are drawn.
void ConsoleView::onLogChange(ConsoleLog::Change change) {
  updateScrollRange();
  if (change == ConsoleLog::Change::LineAdded) verticalScrollBar()->setValue(verticalScrollBar()->maximum());
  viewport()->update();
}

void ConsoleView::resizeEvent(QResizeEvent* event) {
  QAbstractScrollArea::resizeEvent(event);
  updateScrollRange();
}

void ConsoleView::paintEvent(QPaintEvent* event) {
  if (!log_ || log_->count() == 0) return;
  const int scrollX = horizontalScrollBar()->value();
  const int scrollY = verticalScrollBar()->value();
  const QRect exposed = event->rect();
  const long lastIndex = static_cast<long>(log_->count()) - 1;
  const long first = std::max(0L, static_cast<long>((exposed.top() + scrollY) / lineHeight_) - 1);
  const long last = std::min(lastIndex, static_cast<long>((exposed.bottom() + scrollY) / lineHeight_) + 1);

  QPainter painter(viewport());
  painter.setFont(font());
  painter.setPen(palette().color(QPalette::Text));
  const int ascent = QFontMetrics(font()).ascent();
  for (long i = first; i <= last; ++i) {
    const int y = static_cast<int>(i) * lineHeight_ - scrollY + ascent;
    painter.drawText(-scrollX, y, toQt(*log_->lineAt(i)));
  }
}

void ConsoleView::contextMenuEvent(QContextMenuEvent* event) {
  QMenu menu(QStringLiteral("Console Menu"), this);
  menu.setObjectName(QStringLiteral("Console Menu"));
  for (int32_t id : {ID_CLEAR_CONSOLE, ID_SAVE_CONSOLE}) {
    // The same words as the Window menu's Console items.
    const CommandInfo* command = findCommand(id);
    menu.addAction(QString::fromLatin1(command->menuText), this, [this, id] { emit commandRequested(id); });
  }
  const bool fromKey = event->reason() == QContextMenuEvent::Keyboard;
  menu.exec(fromKey ? mapToGlobal(QPoint(10, 10)) : event->globalPos());
}

}  // namespace velda::ui
