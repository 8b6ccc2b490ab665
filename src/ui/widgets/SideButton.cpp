#include "ui/widgets/SideButton.h"

namespace velda::ui {

QPushButton* makeSideButton(const QString& text, QWidget* parent) {
  auto* button = new QPushButton(text, parent);
  // An auto-default button takes Enter for itself whenever it has the focus.
  button->setAutoDefault(false);
  return button;
}

}  // namespace velda::ui
