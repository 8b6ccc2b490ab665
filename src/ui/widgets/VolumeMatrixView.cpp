#include "ui/widgets/VolumeMatrixView.h"

#include <QPainter>
#include <algorithm>

#include "ui/widgets/Latin1.h"

namespace velda::ui {

namespace {

constexpr int kMargin = 6;

QFont labelFont() { return QFont(QStringLiteral("Arial"), 8); }

double largestDiagonalPair(const TriangularMatrix& matrix) {
  double largest = 0.0;
  for (size_t i = 1; i < matrix.order; ++i) {
    for (size_t j = 0; j < i; ++j) largest = std::max(largest, matrix.at(i, i) + matrix.at(j, j));
  }
  return largest;
}

}  // namespace

VolumeMatrixView::VolumeMatrixView(std::vector<std::string> names, const TriangularMatrix& before,
                                   const TriangularMatrix& after, QWidget* parent)
    : QWidget(parent), names_(std::move(names)), before_(before), after_(after), scale_(colourScale(before, after)) {
  setBackgroundRole(QPalette::Base);
  setAutoFillBackground(true);
  resizeToContents();
}

double VolumeMatrixView::colourScale(const TriangularMatrix& before, const TriangularMatrix& after) {
  return std::max(largestDiagonalPair(before), largestDiagonalPair(after));
}

QString VolumeMatrixView::label(size_t i) const {
  const QString name = i < names_.size() ? toQt(names_[i]) : QString();
  return QStringLiteral("%1: %2").arg(static_cast<int>(i) + 1).arg(name);
}

void VolumeMatrixView::zoomIn() {
  cellSize_ = std::min(kMaxCellSize, cellSize_ + kZoomStep);
  resizeToContents();
}

void VolumeMatrixView::zoomOut() {
  cellSize_ = std::max(kMinCellSize, cellSize_ - kZoomStep);
  resizeToContents();
}

void VolumeMatrixView::setShowBefore(bool before) {
  showBefore_ = before;
  update();
}

int VolumeMatrixView::labelWidth() const {
  const QFontMetrics metrics(labelFont());
  int width = 0;
  for (size_t i = 0; i < shown().order; ++i) width = std::max(width, metrics.horizontalAdvance(label(i)));
  return width + kMargin;
}

QSize VolumeMatrixView::sizeHint() const {
  const int n = static_cast<int>(std::max(before_.order, after_.order));
  const int height = QFontMetrics(labelFont()).height();
  return QSize(labelWidth() + n * cellSize_ + 2 * kMargin, height + n * cellSize_ + 2 * kMargin);
}

void VolumeMatrixView::resizeToContents() {
  resize(sizeHint());
  update();
}

// From pale yellow for a small volume to dark red for the scale's top; a
// scale of 0 (a single item, or only empty volumes) paints every cell pale.
QColor VolumeMatrixView::colourOf(double value) const {
  const double share = scale_ > 0.0 ? std::clamp(value / scale_, 0.0, 1.0) : 0.0;
  return QColor::fromRgbF(1.0f, static_cast<float>(1.0 - 0.85 * share), static_cast<float>(0.8 * (1.0 - share)));
}

void VolumeMatrixView::paintEvent(QPaintEvent*) {
  const TriangularMatrix& matrix = shown();
  QPainter painter(this);
  painter.setFont(labelFont());
  const QFontMetrics metrics(labelFont());
  const int left = labelWidth() + kMargin;
  const int top = metrics.height() + kMargin;
  for (size_t i = 0; i < matrix.order; ++i) {
    const int y = top + static_cast<int>(i) * cellSize_;
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(QRect(kMargin, y, left - 2 * kMargin, cellSize_), Qt::AlignRight | Qt::AlignVCenter, label(i));
    painter.drawText(QRect(left + static_cast<int>(i) * cellSize_, kMargin, cellSize_, metrics.height()),
                     Qt::AlignCenter, QString::number(static_cast<int>(i) + 1));
    for (size_t j = 0; j <= i; ++j) {
      const QRect cell(left + static_cast<int>(j) * cellSize_, y, cellSize_, cellSize_);
      painter.fillRect(cell, colourOf(matrix.at(i, j)));
      painter.setPen(Qt::gray);
      painter.drawRect(cell);
      if (cellSize_ >= 40) {
        painter.setPen(Qt::black);
        painter.drawText(cell, Qt::AlignCenter, QString::number(matrix.at(i, j), 'g', 3));
      }
    }
  }
}

}  // namespace velda::ui
