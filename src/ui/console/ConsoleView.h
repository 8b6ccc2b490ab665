#pragma once

#include <QAbstractScrollArea>

#include "common/ConsoleLog.h"

namespace velda::ui {

// Draws the console's lines in the fixed-pitch font, one line per
// line-height, on a 10000-pixel wide scrolling surface. Only the lines that
// meet the exposed area are painted; each new line scrolls to the bottom and
// repaints what is visible.
class ConsoleView : public QAbstractScrollArea {
  Q_OBJECT

 public:
  static constexpr int kSurfaceWidth = 10000;
  static constexpr int kPageAcross = 50;
  static constexpr int kPageLines = 25;
  static constexpr int kStepAcross = 10;

  explicit ConsoleView(QWidget* parent = nullptr);
  ~ConsoleView() override;

  // Starts drawing this console and following its changes; detach stops.
  void attach(ConsoleLog& log);
  void detach();

  int lineHeight() const { return lineHeight_; }
  // The scrolling surface: 10000 pixels by the line count times the line height.
  QSize surfaceSize() const;

 signals:
  // Clear or Save to file chosen in the pop-up "Console Menu".
  void commandRequested(int commandId);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void onLogChange(ConsoleLog::Change change);
  void updateScrollRange();

  ConsoleLog* log_ = nullptr;
  int lineHeight_;
};

}  // namespace velda::ui
