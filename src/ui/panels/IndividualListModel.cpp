#include "ui/panels/IndividualListModel.h"

#include "model/SymbolicMatrix.h"
#include "ui/widgets/Latin1.h"

namespace velda::ui {

void IndividualListModel::setMatrix(const SymbolicMatrix* matrix) {
  beginResetModel();
  individuals_.clear();
  if (matrix) {
    individuals_.reserve(matrix->individualCount());
    for (const Individual& individual : matrix->individuals) individuals_.push_back(&individual);
  }
  endResetModel();
}

int IndividualListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(individuals_.size());
}

QVariant IndividualListModel::data(const QModelIndex& index, int role) const {
  if (role != Qt::DisplayRole || !index.isValid() || static_cast<size_t>(index.row()) >= individuals_.size()) {
    return QVariant();
  }
  return toQt(individuals_[static_cast<size_t>(index.row())]->id);
}

}  // namespace velda::ui
