#include "ui/dialogs/NumberParameterDialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QVBoxLayout>

#include "ui/widgets/MessageBoxes.h"

namespace velda::ui {

NumberParameterDialog::NumberParameterDialog(const QString& title, const QString& label, int value, int minimum,
                                             int maximum, QWidget* parent)
    : QDialog(parent), value_(value), minimum_(minimum), maximum_(maximum) {
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
  bool isNumber = false;
  const int typed = field_->text().trimmed().toInt(&isNumber);
  if (!isNumber || typed < minimum_ || typed > maximum_) {
    showMessageBox(this, QStringLiteral("Please enter an integer between %1 and %2.").arg(minimum_).arg(maximum_),
                   MessageIcon::Information);
    field_->setFocus();
    field_->selectAll();
    return;
  }
  value_ = typed;
  QDialog::accept();
}

}  // namespace velda::ui
