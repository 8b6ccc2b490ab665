#include "ui/widgets/MessageBoxes.h"

#include <QGridLayout>

#include "ui/widgets/Latin1.h"

namespace velda::ui {

namespace {

const QString kCaption = QStringLiteral("VELDA");
// Room that a window frame takes beside the caption: the window icon and
// the minimise, maximise and close buttons, with some air.
constexpr int kTitleBarRoom = 180;

// A short text such as "Load failed" makes a box too narrow for its own
// caption, which the window manager then cuts to "...": the box is made at
// least as wide as the caption and its title-bar buttons.
void widenForCaption(QMessageBox& box) {
  const int width = box.fontMetrics().horizontalAdvance(box.windowTitle()) + kTitleBarRoom;
  auto* grid = qobject_cast<QGridLayout*>(box.layout());
  if (!grid) return;
  grid->addItem(new QSpacerItem(width, 0, QSizePolicy::Minimum, QSizePolicy::Minimum), grid->rowCount(), 0, 1,
                grid->columnCount());
}

int runBox(QMessageBox& box) {
  widenForCaption(box);
  return box.exec();
}

}  // namespace

QMessageBox::Icon qtIcon(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::Information: return QMessageBox::Information;
    case MessageIcon::Warning: return QMessageBox::Warning;
    case MessageIcon::Error: return QMessageBox::Critical;
    case MessageIcon::Question: return QMessageBox::Question;
    case MessageIcon::None: break;
  }
  return QMessageBox::NoIcon;
}

void showMessageBox(QWidget* parent, const QString& text, MessageIcon icon, const QString& caption) {
  QMessageBox box(qtIcon(icon), caption.isEmpty() ? kCaption : caption, text, QMessageBox::Ok, parent);
  runBox(box);
}

bool showRefusal(QWidget* parent, const std::optional<Refusal>& refusal) {
  if (!refusal) return false;
  showMessageBox(parent, toQt(refusal->text), refusal->icon);
  return true;
}

QMessageBox::StandardButton askQuestion(QWidget* parent, const QString& text, QMessageBox::StandardButtons buttons,
                                        MessageIcon icon) {
  QMessageBox box(qtIcon(icon), kCaption, text, buttons, parent);
  return static_cast<QMessageBox::StandardButton>(runBox(box));
}

}  // namespace velda::ui
