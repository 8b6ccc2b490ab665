#pragma once

#include <QDialog>

class QLabel;

namespace velda::ui {

// "About VELDA": the name and version, the version line and the credits,
// in Arial; OK and "More", which shows the longer credits.
class AboutDialog : public QDialog {
  Q_OBJECT

 public:
  static constexpr const char* kVersionLine = "Version 2.4 (library v9) 30/09/03";

  explicit AboutDialog(QWidget* parent = nullptr);

  QLabel* moreLabel() const { return more_; }

 private:
  QLabel* more_;
};

}  // namespace velda::ui
