#include "ui/widgets/MessageBoxes.h"

namespace velda::ui {

namespace {
const QString kCaption = QStringLiteral("VELDA");
}

QMessageBox::Icon qtIcon(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::Information:
      return QMessageBox::Information;
    case MessageIcon::Warning:
      return QMessageBox::Warning;
    case MessageIcon::Error:
      return QMessageBox::Critical;
    case MessageIcon::Question:
      return QMessageBox::Question;
    case MessageIcon::None:
      break;
  }
  return QMessageBox::NoIcon;
}

void showMessageBox(QWidget* parent, const QString& text, MessageIcon icon) {
  QMessageBox box(qtIcon(icon), kCaption, text, QMessageBox::Ok, parent);
  box.exec();
}

QMessageBox::StandardButton askQuestion(QWidget* parent, const QString& text, QMessageBox::StandardButtons buttons,
                                        MessageIcon icon) {
  QMessageBox box(qtIcon(icon), kCaption, text, buttons, parent);
  return static_cast<QMessageBox::StandardButton>(box.exec());
}

}  // namespace velda::ui
