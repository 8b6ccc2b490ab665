#pragma once

#include <QWidget>

namespace velda::ui {

// What an empty variables or individuals panel shows: the single item
// "Empty" and the line "Welcome to VELDA.".
class EmptyPage : public QWidget {
  Q_OBJECT

 public:
  explicit EmptyPage(QWidget* parent = nullptr);
};

}  // namespace velda::ui
