#include "ui/dialogs/VolumeMatrixDialog.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include "model/SymbolicMatrix.h"
#include "ui/widgets/SideButton.h"
#include "ui/widgets/VolumeMatrixView.h"

namespace velda::ui {

namespace {

std::vector<std::string> assertionNames(const SymbolicMatrix& matrix) {
  std::vector<std::string> names;
  for (const Assertion* assertion : matrix.orderedAssertions)
    names.push_back(assertion ? assertion->id : std::string());
  return names;
}

}  // namespace

VolumeMatrixDialog::VolumeMatrixDialog(const SymbolicMatrix& matrix, QWidget* parent) : QDialog(parent) {
  setWindowTitle(QStringLiteral("Volume Matrix"));
  view_ = new VolumeMatrixView(assertionNames(matrix), matrix.volumesBefore, matrix.volumesAfter);
  auto* scroll = new QScrollArea(this);
  scroll->setWidget(view_);
  scroll->setMinimumSize(520, 400);

  auto* zoomIn = makeSideButton(QStringLiteral("Zoom +"), this);
  auto* zoomOut = makeSideButton(QStringLiteral("Zoom -"), this);
  initial_ = new QCheckBox(QStringLiteral("View initial volume matrix"), this);
  initial_->setChecked(true);
  auto* close = new QPushButton(QStringLiteral("&Close"), this);
  close->setDefault(true);
  connect(zoomIn, &QPushButton::clicked, view_, &VolumeMatrixView::zoomIn);
  connect(zoomOut, &QPushButton::clicked, view_, &VolumeMatrixView::zoomOut);
  connect(initial_, &QCheckBox::toggled, view_, &VolumeMatrixView::setShowBefore);
  connect(close, &QPushButton::clicked, this, &QDialog::accept);

  auto* row = new QHBoxLayout;
  row->addWidget(zoomIn);
  row->addWidget(zoomOut);
  row->addWidget(initial_);
  row->addStretch(1);
  row->addWidget(close);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(scroll, 1);
  layout->addLayout(row);
}

}  // namespace velda::ui
