#include "ui/dialogs/ExportDialog.h"

#include <QCheckBox>
#include <QComboBox>
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
  request.filter =
      "XML file (*.xml)|*.xml|Korva file (*.kvf)|*.kvf|RSDA symbolic table (*.csv)|*.csv|"
      "Tidy table (*.csv)|*.csv||";
  request.defaultSuffix = "xml";
  return request;
}

// The file types of "Select..." that choose a table; the others leave the
// choice between symbolic text and XML to the name.
constexpr int kRsdaFilter = 2;
constexpr int kTidyFilter = 3;

// The choices of the format box, in the order of ExportFormat.
QComboBox* newFormatBox(ExportFormat format, QWidget* parent) {
  auto* box = new QComboBox(parent);
  box->addItems({QStringLiteral("Symbolic file (Korva if the name holds \"kvf\", else XML)"),
                 QStringLiteral("RSDA symbolic table (R)"), QStringLiteral("Tidy table (pandas)")});
  box->setCurrentIndex(static_cast<int>(format));
  return box;
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
  file_->setText(pathToQt(values.file));
  format_ = newFormatBox(values.format, this);
  title_ = new QLineEdit(toQt(values.title), this);
  subtitle_ = new QLineEdit(toQt(values.subtitle), this);
  title_->setMaxLength(kTextCapacity);
  subtitle_->setMaxLength(kTextCapacity);
  reducedAssertions_ = reducedBox(QStringLiteral("Export reduced assertions"), values.reducedAssertionsAvailable, this);
  reducedHordes_ = reducedBox(QStringLiteral("Export reduced Hordes"), values.reducedHordesAvailable, this);
  connect(file_, &FileField::fileChosen, this, &ExportDialog::onFileChosen);

  auto* form = new QFormLayout;
  form->addRow(QStringLiteral("File"), file_);
  form->addRow(QStringLiteral("Format"), format_);
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
// name without extension, replacing what was typed. Its file type says what
// to write there.
void ExportDialog::onFileChosen(const QString& path) {
  title_->setText(QFileInfo(path).completeBaseName());
  const int filter = file_->chosenFilter();
  if (filter < 0) return;
  const ExportFormat format = filter == kRsdaFilter   ? ExportFormat::RsdaTable
                              : filter == kTidyFilter ? ExportFormat::TidyTable
                                                      : ExportFormat::Symbolic;
  format_->setCurrentIndex(static_cast<int>(format));
}

void ExportDialog::accept() {
  ExportValues chosen = values_;
  chosen.file = pathFromQt(file_->text());
  chosen.format = static_cast<ExportFormat>(format_->currentIndex());
  if (showRefusal(this, checkExportValues(chosen))) return;
  chosen.title = fromQt(title_->text());
  chosen.subtitle = subtitle_->text().isEmpty() ? chosen.title : fromQt(subtitle_->text());
  chosen.exportReducedAssertions = reducedAssertions_->isChecked();
  chosen.exportReducedHordes = reducedHordes_->isChecked();
  values_ = chosen;
  QDialog::accept();
}

}  // namespace velda::ui
