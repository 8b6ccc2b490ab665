#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <functional>

#include "common/Progress.h"

class QLabel;
class QPushButton;

namespace velda::ui {

// The modal window in which a long operation runs: two text lines and
// Cancel. While shown it is the process-wide progress target; each report
// and each cancel poll lets pending events run, at most every 20 ms.
class ProgressDialog : public QDialog, public ProgressTarget {
  Q_OBJECT

 public:
  static constexpr qint64 kPumpIntervalMs = 20;

  explicit ProgressDialog(const QString& title, QWidget* parent = nullptr);

  // Shows the dialog, runs the operation to its end, closes the dialog and
  // returns the operation's result.
  bool run(const std::function<bool()>& operation);
  bool wasCancelled() const { return cancelled_; }

  QString line1() const;
  QString line2() const;
  QPushButton* cancelButton() const { return cancelButton_; }

  void setLine1(const std::string& text) override;
  void setLine2(const std::string& text) override;
  void enableCancel(bool enabled) override;
  bool cancelRequested() override;

  // Escape and the close box act as Cancel (when it is enabled) and never
  // hide the dialog: the operation still runs, so the window must stay
  // modal until run() ends.
  void reject() override;

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void pumpEvents();

  QLabel* line1_;
  QLabel* line2_;
  QPushButton* cancelButton_;
  QElapsedTimer sincePump_;
  bool cancelled_ = false;
};

}  // namespace velda::ui
