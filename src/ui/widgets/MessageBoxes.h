#pragma once

#include <QMessageBox>
#include <QString>

#include <optional>

#include "common/MessageBox.h"
#include "document/DialogChecks.h"

namespace velda::ui {

// The program's message boxes: caption "VELDA", the command's icon.
QMessageBox::Icon qtIcon(MessageIcon icon);
void showMessageBox(QWidget* parent, const QString& text, MessageIcon icon, const QString& caption = QString());
// Shows a dialog check's refusal, if any; true when the values were refused.
bool showRefusal(QWidget* parent, const std::optional<Refusal>& refusal);
// Yes/No (or Yes/No/Cancel) question with the given icon; returns the button.
QMessageBox::StandardButton askQuestion(QWidget* parent, const QString& text, QMessageBox::StandardButtons buttons,
                                        MessageIcon icon);

}  // namespace velda::ui
