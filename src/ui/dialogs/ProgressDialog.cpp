#include "ui/dialogs/ProgressDialog.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/widgets/Latin1.h"

namespace velda::ui {

ProgressDialog::ProgressDialog(const QString& title, QWidget* parent) : QDialog(parent) {
  setWindowTitle(title);
  setModal(true);
  line1_ = new QLabel(this);
  line2_ = new QLabel(this);
  line1_->setMinimumWidth(360);
  cancelButton_ = new QPushButton(QStringLiteral("Cancel"), this);
  connect(cancelButton_, &QPushButton::clicked, this, [this] { cancelled_ = true; });

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(line1_);
  layout->addWidget(line2_);
  layout->addWidget(cancelButton_, 0, Qt::AlignHCenter);
}

bool ProgressDialog::run(const std::function<bool()>& operation) {
  cancelled_ = false;
  show();
  QCoreApplication::processEvents();
  sincePump_.start();
  bool result;
  {
    ScopedProgressTarget target(this);
    result = operation();
  }
  hide();
  return result;
}

QString ProgressDialog::line1() const { return line1_->text(); }
QString ProgressDialog::line2() const { return line2_->text(); }

void ProgressDialog::pumpEvents() {
  if (sincePump_.isValid() && sincePump_.elapsed() < kPumpIntervalMs) return;
  QCoreApplication::processEvents();
  sincePump_.restart();
}

void ProgressDialog::setLine1(const std::string& text) {
  line1_->setText(toQt(text));
  pumpEvents();
}

void ProgressDialog::setLine2(const std::string& text) {
  line2_->setText(toQt(text));
  pumpEvents();
}

void ProgressDialog::reject() {
  if (cancelButton_->isEnabled()) cancelled_ = true;
}

void ProgressDialog::closeEvent(QCloseEvent* event) {
  event->ignore();
  reject();
}

void ProgressDialog::enableCancel(bool enabled) { cancelButton_->setEnabled(enabled); }

bool ProgressDialog::cancelRequested() {
  pumpEvents();
  return cancelled_;
}

}  // namespace velda::ui
