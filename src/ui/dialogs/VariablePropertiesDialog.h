#pragma once

#include <QDialog>
#include <vector>

#include "document/CommandValues.h"

class QComboBox;
class QTreeWidget;
class QTreeWidgetItem;

namespace velda {
class SymbolicMatrix;
}

namespace velda::ui {

// "Variables properties": each variable's state (active or not) and, for
// multinominal variables, the view type; one choice sets all types at once.
class VariablePropertiesDialog : public QDialog {
  Q_OBJECT

 public:
  static const char* const kViewTypes[4];

  VariablePropertiesDialog(const SymbolicMatrix& matrix, const VariablePropertiesValues& values,
                           QWidget* parent = nullptr);

  VariablePropertiesValues values() const;
  QTreeWidget* tree() const { return tree_; }
  // Per variable, its state and (multinominal only, else null) type editors.
  QComboBox* stateEditor(size_t variable) const { return states_[variable]; }
  QComboBox* typeEditor(size_t variable) const { return types_[variable]; }
  QComboBox* allTypesEditor() const { return allTypes_; }

 private:
  QComboBox* addProperty(QTreeWidgetItem* parent, const QString& name, const QStringList& choices, int current);

  VariablePropertiesValues values_;
  QTreeWidget* tree_;
  std::vector<QComboBox*> states_;
  std::vector<QComboBox*> types_;
  QComboBox* allTypes_;
};

}  // namespace velda::ui
