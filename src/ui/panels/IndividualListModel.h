#pragma once

#include <QAbstractListModel>
#include <vector>

namespace velda {
class Individual;
class SymbolicMatrix;
}  // namespace velda

namespace velda::ui {

// The matrix's individuals for a list view: only pointers are kept, and a
// name is turned into a QString when a visible row asks for it, so a
// million individuals fill the panel at once.
class IndividualListModel : public QAbstractListModel {
  Q_OBJECT

 public:
  using QAbstractListModel::QAbstractListModel;

  // Lists the matrix's individuals in table order; null empties the list.
  void setMatrix(const SymbolicMatrix* matrix);

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

 private:
  std::vector<const Individual*> individuals_;
};

}  // namespace velda::ui
