#pragma once

#include <QPushButton>

namespace velda::ui {

// A push button beside a dialog's fields ("Select...", "&Modify...",
// "More"): it acts when clicked or pressed with the space bar, but Enter,
// even while it has the focus, goes to the dialog's default button.
QPushButton* makeSideButton(const QString& text, QWidget* parent);

}  // namespace velda::ui
