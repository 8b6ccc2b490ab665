#include "ui/dialogs/VariablePropertiesDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QStyledItemDelegate>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "model/SymbolicMatrix.h"
#include "ui/widgets/Latin1.h"

namespace velda::ui {

const char* const VariablePropertiesDialog::kViewTypes[4] = {"Boolean view", "Cardinality view", "Probabilist view",
                                                             "KT-estimate view"};

namespace {

QTreeWidgetItem* group(QTreeWidgetItem* parent, const QString& name, const QString& help) {
  auto* item = new QTreeWidgetItem(parent, QStringList{name});
  item->setToolTip(0, help);
  item->setStatusTip(0, help);
  item->setExpanded(true);
  return item;
}

// The list of a state editor offers the changes ("Set to Active") while the
// box itself shows the state ("Active").
class StateChoiceDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  QString displayText(const QVariant& value, const QLocale& locale) const override {
    return QStringLiteral("Set to ") + QStyledItemDelegate::displayText(value, locale);
  }
};

QStringList viewTypeNames(const QString& prefix) {
  QStringList names;
  for (const char* type : VariablePropertiesDialog::kViewTypes) names << prefix + QString::fromLatin1(type);
  return names;
}

}  // namespace

VariablePropertiesDialog::VariablePropertiesDialog(const SymbolicMatrix& matrix, const VariablePropertiesValues& values,
                                                   QWidget* parent)
    : QDialog(parent), values_(values) {
  setWindowTitle(QStringLiteral("Variables properties"));
  tree_ = new QTreeWidget(this);
  tree_->setColumnCount(2);
  tree_->setHeaderHidden(true);
  tree_->setMinimumSize(420, 360);

  auto* root = new QTreeWidgetItem(tree_, QStringList{QStringLiteral("Multinominal variables options")});
  root->setToolTip(0, QStringLiteral("Set multinominal variable options."));
  root->setStatusTip(0, QStringLiteral("Set multinominal variable options."));
  QTreeWidgetItem* nominal =
      group(root, QStringLiteral("Nominal Variables"), QStringLiteral("Contains nominal variables."));
  QTreeWidgetItem* multinominal =
      group(root, QStringLiteral("Multinominal Variables"), QStringLiteral("Contains multinominal variables."));
  QTreeWidgetItem* continuous = group(root, QStringLiteral("Continue Variables"), QString());
  root->setExpanded(true);

  allTypes_ =
      addProperty(multinominal, QStringLiteral("Sets all types to..."), viewTypeNames(QStringLiteral("Set to ")), -1);

  const QStringList states{QStringLiteral("Active"), QStringLiteral("Inactive")};
  states_.assign(matrix.variableCount(), nullptr);
  types_.assign(matrix.variableCount(), nullptr);
  values_.variables.resize(matrix.variableCount());
  for (size_t i = 0; i < matrix.variableCount(); ++i) {
    const SymbolicVariable& variable = matrix.variable(i);
    const VariableProperty& property = values_.variables[i];
    const bool isMultinominal = variable.isCategorical() && variable.multiple;
    QTreeWidgetItem* parentGroup = !variable.isCategorical() ? continuous : isMultinominal ? multinominal : nominal;
    auto* item = new QTreeWidgetItem(parentGroup, QStringList{toQt(variable.name)});
    item->setExpanded(true);
    states_[i] = addProperty(item, QStringLiteral("State"), states, property.active ? 0 : 1);
    states_[i]->setItemDelegate(new StateChoiceDelegate(states_[i]));
    if (isMultinominal) types_[i] = addProperty(item, QStringLiteral("Type"), viewTypeNames(QString()), property.mode);
  }
  connect(allTypes_, &QComboBox::activated, this, [this](int type) {
    for (QComboBox* editor : types_) {
      if (editor) editor->setCurrentIndex(type);
    }
  });
  tree_->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(tree_);
  layout->addWidget(buttons);
}

QComboBox* VariablePropertiesDialog::addProperty(QTreeWidgetItem* parent, const QString& name,
                                                 const QStringList& choices, int current) {
  auto* item = new QTreeWidgetItem(parent, QStringList{name});
  auto* editor = new QComboBox(tree_);
  editor->addItems(choices);
  editor->setCurrentIndex(current);
  tree_->setItemWidget(item, 1, editor);
  return editor;
}

VariablePropertiesValues VariablePropertiesDialog::values() const {
  VariablePropertiesValues values = values_;
  for (size_t i = 0; i < values.variables.size(); ++i) {
    values.variables[i].active = states_[i]->currentIndex() == 0;
    if (types_[i]) values.variables[i].mode = types_[i]->currentIndex();
  }
  return values;
}

}  // namespace velda::ui
