#pragma once

#include <QDialog>

namespace velda {
class SymbolicMatrix;
}

class QCheckBox;

namespace velda::ui {

class VolumeMatrixView;

// "Volume Matrix": the volume matrices before and after the last
// reduction, with zoom and the choice of the matrix shown.
class VolumeMatrixDialog : public QDialog {
  Q_OBJECT

 public:
  explicit VolumeMatrixDialog(const SymbolicMatrix& matrix, QWidget* parent = nullptr);

  VolumeMatrixView* view() const { return view_; }

 private:
  VolumeMatrixView* view_;
  QCheckBox* initial_;
};

}  // namespace velda::ui
