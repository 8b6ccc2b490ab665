#include "ui/widgets/ExtractionSettingsBox.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

namespace velda::ui {

namespace {

QLineEdit* countEdit(int32_t value, bool enabled, QWidget* parent) {
  auto* edit = new QLineEdit(QString::number(value), parent);
  edit->setMaximumWidth(70);
  edit->setEnabled(enabled);
  return edit;
}

}  // namespace

ExtractionSettingsBox::ExtractionSettingsBox(const NewValues& values, QWidget* parent)
    : QGroupBox(QStringLiteral("Settings"), parent) {
  weight_ = new QCheckBox(QStringLiteral("&Last column is ponderation"), this);
  weight_->setChecked(values.lastColumnIsWeight);
  sampling_ = new QCheckBox(QStringLiteral("Sampling with up to"), this);
  sampling_->setChecked(values.sampling);
  sampleSize_ = countEdit(values.sampleSize, values.sampling, this);
  minimumSet_ = new QCheckBox(QStringLiteral("Groups with at least"), this);
  minimumSet_->setChecked(values.minimumSet);
  minimum_ = countEdit(values.minimum, values.minimumSet, this);
  connect(sampling_, &QCheckBox::toggled, sampleSize_, &QWidget::setEnabled);
  connect(minimumSet_, &QCheckBox::toggled, minimum_, &QWidget::setEnabled);
  inDatabase_ = new QCheckBox(QStringLiteral("Aggregate in the database (individuals are not read)"), this);
  inDatabase_->setChecked(values.inDatabase);
  sampling_->setEnabled(!values.inDatabase);
  connect(inDatabase_, &QCheckBox::toggled, this, [this](bool aggregated) {
    if (aggregated) sampling_->setChecked(false);
    sampling_->setEnabled(!aggregated);
  });

  auto* grid = new QGridLayout(this);
  grid->addWidget(weight_, 0, 0, 1, 3);
  grid->addWidget(sampling_, 1, 0);
  grid->addWidget(sampleSize_, 1, 1);
  grid->addWidget(new QLabel(QStringLiteral("individuals per group"), this), 1, 2);
  grid->addWidget(minimumSet_, 2, 0);
  grid->addWidget(minimum_, 2, 1);
  grid->addWidget(new QLabel(QStringLiteral("individuals per group"), this), 2, 2);
  grid->addWidget(inDatabase_, 3, 0, 1, 3);
}

void ExtractionSettingsBox::store(NewValues& values) const {
  values.lastColumnIsWeight = weight_->isChecked();
  values.sampling = sampling_->isChecked();
  values.sampleSize = sampleSize_->text().trimmed().toInt();
  values.minimumSet = minimumSet_->isChecked();
  values.minimum = minimum_->text().trimmed().toInt();
  values.inDatabase = inDatabase_->isChecked();
}

}  // namespace velda::ui
