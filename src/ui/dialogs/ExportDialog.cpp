#include "ui/dialogs/ExportDialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QLineEdit>
#include <QVBoxLayout>

#include "ui/widgets/FileField.h"
#include "ui/widgets/Latin1.h"
#include "ui/widgets/MessageBoxes.h"

namespace velda::ui {

namespace {

// The project file keeps each text in 128 bytes with its terminating zero.
constexpr int kTextCapacity = 127;

FileRequest exportFileRequest() {
  FileRequest request;
  request.mode = FileRequest::Mode::Save;
  request.filter = "XML file (*.xml)|*.xml|Korva file (*.kvf)|*.kvf||";
  request.defaultSuffix = "xml";
  return request;
}

QCheckBox* reducedBox(const QString& text, bool available, QWidget* parent) {
  auto* box = new QCheckBox(text, parent);
  box->setChecked(available);
  box->setEnabled(available);
  return box;
}

}  // namespace

ExportDialog::ExportDialog(const ExportValues& values, QWidget* parent) : QDialog(parent), values_(values) {
  setWindowTitle(QStringLiteral("KORVA export"));
  file_ = new FileField(exportFileRequest(), this);
  file_->setText(toQt(values.file));
  title_ = new QLineEdit(toQt(values.title), this);
  subtitle_ = new QLineEdit(toQt(values.subtitle), this);
  title_->setMaxLength(kTextCapacity);
  subtitle_->setMaxLength(kTextCapacity);
  reducedAssertions_ = reducedBox(QStringLiteral("Export reduced assertions"), values.reducedAssertionsAvailable, this);
  reducedHordes_ = reducedBox(QStringLiteral("Export reduced Hordes"), values.reducedHordesAvailable, this);
  connect(file_, &FileField::fileChosen, this, &ExportDialog::onFileChosen);

  auto* form = new QFormLayout;
  form->addRow(QStringLiteral("File"), file_);
  form->addRow(QStringLiteral("Title"), title_);
  form->addRow(QStringLiteral("Subtitle"), subtitle_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(form);
  layout->addWidget(reducedAssertions_);
  layout->addWidget(reducedHordes_);
  layout->addWidget(buttons);
}

// A chosen destination also names the export: its title becomes the file's
// name without extension, replacing what was typed.
void ExportDialog::onFileChosen(const QString& path) { title_->setText(QFileInfo(path).completeBaseName()); }

void ExportDialog::accept() {
  ExportValues chosen = values_;
  chosen.file = fromQt(file_->text());
  if (showRefusal(this, checkExportValues(chosen))) return;
  chosen.title = fromQt(title_->text());
  chosen.subtitle = subtitle_->text().isEmpty() ? chosen.title : fromQt(subtitle_->text());
  chosen.exportReducedAssertions = reducedAssertions_->isChecked();
  chosen.exportReducedHordes = reducedHordes_->isChecked();
  values_ = chosen;
  QDialog::accept();
}

}  // namespace velda::ui
