#include "ui/dialogs/JoinDialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QVBoxLayout>

#include "ui/widgets/FileField.h"
#include "ui/widgets/Latin1.h"
#include "ui/widgets/MessageBoxes.h"

namespace velda::ui {

namespace {

// The browse dialog of a joined file: its filter text names ".kvf" files
// and has no pattern part, so the project files stay listed.
FileRequest joinFileRequest() {
  FileRequest request;
  request.mode = FileRequest::Mode::Open;
  request.filter = "Korva file (*.kvf)";
  request.defaultSuffix = "gaj";
  return request;
}

}  // namespace

JoinDialog::JoinDialog(const JoinValues& values, QWidget* parent) : QDialog(parent), values_(values) {
  setWindowTitle(QStringLiteral("Select files to join"));
  first_ = new FileField(joinFileRequest(), this);
  second_ = new FileField(joinFileRequest(), this);
  first_->setText(pathToQt(values.firstFile));
  second_->setText(pathToQt(values.secondFile));

  auto* form = new QFormLayout;
  form->addRow(QStringLiteral("First .gaj file"), first_);
  form->addRow(QStringLiteral("Second .gaj file"), second_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(form);
  layout->addWidget(buttons);
}

void JoinDialog::accept() {
  JoinValues chosen = values_;
  chosen.firstFile = pathFromQt(first_->text());
  chosen.secondFile = pathFromQt(second_->text());
  if (showRefusal(this, checkJoinValues(chosen))) return;
  values_ = chosen;
  QDialog::accept();
}

}  // namespace velda::ui
