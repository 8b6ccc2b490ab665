#include "ui/dialogs/NumberParameterDialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QVBoxLayout>

#include "ui/widgets/MessageBoxes.h"

namespace velda::ui {

NumberParameterDialog::NumberParameterDialog(const QString& title, const QString& label, int32_t value, Check check,
                                             QWidget* parent)
    : QDialog(parent), value_(value), check_(std::move(check)) {
  setWindowTitle(title);
  field_ = new QLineEdit(QString::number(value), this);
  auto* form = new QFormLayout;
  form->addRow(label, field_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(form);
  layout->addWidget(buttons);
}

void NumberParameterDialog::accept() {
  // Text that is not a number reads as 0, which every range refuses.
  const int32_t typed = field_->text().trimmed().toInt();
  if (showRefusal(this, check_(typed))) {
    field_->setFocus();
    field_->selectAll();
    return;
  }
  value_ = typed;
  QDialog::accept();
}

}  // namespace velda::ui
