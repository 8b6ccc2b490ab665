#include "ui/widgets/MessageBoxes.h"

#include "ui/widgets/Latin1.h"

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

void showMessageBox(QWidget* parent, const QString& text, MessageIcon icon, const QString& caption) {
  QMessageBox box(qtIcon(icon), caption.isEmpty() ? kCaption : caption, text, QMessageBox::Ok, parent);
  box.exec();
}

bool showRefusal(QWidget* parent, const std::optional<Refusal>& refusal) {
  if (!refusal) return false;
  showMessageBox(parent, toQt(refusal->text), refusal->icon);
  return true;
}

QMessageBox::StandardButton askQuestion(QWidget* parent, const QString& text, QMessageBox::StandardButtons buttons,
                                        MessageIcon icon) {
  QMessageBox box(qtIcon(icon), kCaption, text, buttons, parent);
  return static_cast<QMessageBox::StandardButton>(box.exec());
}

}  // namespace velda::ui
