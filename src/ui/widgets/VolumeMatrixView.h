#pragma once

#include <QWidget>
#include <string>
#include <vector>

#include "model/AnalysisResults.h"

namespace velda::ui {

// Draws a packed lower-triangular volume matrix: one square cell per entry,
// coloured on a scale fixed once for both matrices (the largest sum of two
// different diagonal entries), with "%d: %s" labels in Arial.
class VolumeMatrixView : public QWidget {
  Q_OBJECT

 public:
  static constexpr int kInitialCellSize = 50;
  static constexpr int kZoomStep = 10;
  static constexpr int kMinCellSize = 10;
  static constexpr int kMaxCellSize = 200;

  VolumeMatrixView(std::vector<std::string> names, const TriangularMatrix& before, const TriangularMatrix& after,
                   QWidget* parent = nullptr);

  // The colour scale: 0 when no pair of diagonal entries exists.
  static double colourScale(const TriangularMatrix& before, const TriangularMatrix& after);
  double scale() const { return scale_; }
  int cellSize() const { return cellSize_; }
  bool showsBefore() const { return showBefore_; }
  // The label of item i: "%d: %s" with its number from 1 and its name.
  QString label(size_t i) const;

  void zoomIn();
  void zoomOut();
  void setShowBefore(bool before);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const TriangularMatrix& shown() const { return showBefore_ ? before_ : after_; }
  QColor colourOf(double value) const;
  int labelWidth() const;
  void resizeToContents();

  std::vector<std::string> names_;
  const TriangularMatrix& before_;
  const TriangularMatrix& after_;
  double scale_;
  int cellSize_ = kInitialCellSize;
  bool showBefore_ = true;
};

}  // namespace velda::ui
