#pragma once

#include <QMessageBox>
#include <QString>

#include "common/MessageBox.h"

namespace velda::ui {

// The program's message boxes: caption "VELDA", the command's icon.
QMessageBox::Icon qtIcon(MessageIcon icon);
void showMessageBox(QWidget* parent, const QString& text, MessageIcon icon);
// Yes/No (or Yes/No/Cancel) question with the given icon; returns the button.
QMessageBox::StandardButton askQuestion(QWidget* parent, const QString& text, QMessageBox::StandardButtons buttons,
                                        MessageIcon icon);

}  // namespace velda::ui
