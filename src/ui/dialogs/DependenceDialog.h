#pragma once

#include <QDialog>

#include "document/CommandValues.h"

class QListWidget;

namespace velda {
class SymbolicMatrix;
}

namespace velda::ui {

// "Add a dependence": a mother variable, the mother's modalities for which
// the daughters apply, and the daughter variables.
class DependenceDialog : public QDialog {
  Q_OBJECT

 public:
  DependenceDialog(const SymbolicMatrix& matrix, const DependenceValues& values, QWidget* parent = nullptr);

  DependenceValues values() const { return values_; }
  QListWidget* motherList() const { return mothers_; }
  QListWidget* modalityList() const { return modalities_; }
  QListWidget* daughterList() const { return daughters_; }

  void accept() override;

 private:
  void onMotherChosen();

  const SymbolicMatrix& matrix_;
  DependenceValues values_;
  QListWidget* mothers_;
  QListWidget* modalities_;
  QListWidget* daughters_;
};

}  // namespace velda::ui
