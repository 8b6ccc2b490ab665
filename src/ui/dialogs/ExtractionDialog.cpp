#include "ui/dialogs/ExtractionDialog.h"

#include <QDialogButtonBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "model/CategoricalVariable.h"
#include "model/SymbolicMatrix.h"
#include "ui/dialogs/DBViewDialog.h"
#include "ui/widgets/DataSourceBox.h"
#include "ui/widgets/DataSourceLink.h"
#include "ui/widgets/ExtractionSettingsBox.h"
#include "ui/widgets/Latin1.h"
#include "ui/widgets/MessageBoxes.h"
#include "ui/widgets/SideButton.h"
#include "ui/widgets/TableListBox.h"

namespace velda::ui {

namespace {

const QString kNoTable = QStringLiteral("Please select a Table or a Request");

}  // namespace

QString ExtractionDialog::titleOf(QueryPurpose purpose, bool written) {
  switch (purpose) {
    case QueryPurpose::NewData:
      return written ? QStringLiteral("SQL Query") : QStringLiteral("Extraction of individuals");
    case QueryPurpose::AddVariables: return written ? QStringLiteral("SQL Query") : QStringLiteral("Add individuals");
    case QueryPurpose::Taxonomy: break;
  }
  return written ? QStringLiteral("Taxonomy query") : QStringLiteral("Create a taxonomy");
}

ExtractionDialog::ExtractionDialog(QueryPurpose purpose, bool written, const Values& values, DataSourceLink& link,
                                   const SymbolicMatrix* matrix, QWidget* parent)
    : QDialog(parent), purpose_(purpose), written_(written), values_(values), link_(link), matrix_(matrix) {
  setWindowTitle(titleOf(purpose, written));
  const bool taxonomy = purpose == QueryPurpose::Taxonomy;
  auto* layout = new QVBoxLayout(this);

  if (taxonomy) {
    variables_ = new QListWidget(this);
    variables_->setMaximumHeight(110);
    if (matrix) buildVariableList(*matrix);
    auto* box = new QGroupBox(QStringLiteral("Variable"), this);
    (new QVBoxLayout(box))->addWidget(variables_);
    layout->addWidget(box);
  }

  dataSource_ = new DataSourceBox(link, this);
  layout->addWidget(dataSource_);

  if (written) {
    queryEdit_ = new QPlainTextEdit(toQt(values.query.query), this);
    queryEdit_->setMinimumSize(420, 90);
    QWidget* queryParent = this;
    QVBoxLayout* queryLayout = layout;
    if (taxonomy) {
      auto* box = new QGroupBox(QStringLiteral("Query"), this);
      queryLayout = new QVBoxLayout(box);
      queryParent = box;
      layout->addWidget(box);
    }
    queryLayout->addWidget(new QLabel(QStringLiteral("Write a Query:"), queryParent));
    queryLayout->addWidget(queryEdit_);
  } else {
    layout->addWidget(new QLabel(QStringLiteral("Select a Table or a Query:"), this));
  }

  if (!written || !taxonomy) {
    tables_ = new TableListBox(link, this);
    layout->addWidget(tables_);
    connect(dataSource_, &DataSourceBox::connectionChanged, tables_, &TableListBox::refresh);
  }

  if (!written) {
    writeQuery_ = makeSideButton(taxonomy ? QStringLiteral("&Write a Query...") : QStringLiteral("Write Query"), this);
    view_ = makeSideButton(taxonomy ? QStringLiteral("&View") : QStringLiteral("View"), this);
    connect(writeQuery_, &QPushButton::clicked, this, &ExtractionDialog::openWrittenForm);
    connect(tables_->list(), &QListWidget::itemDoubleClicked, this, &ExtractionDialog::accept);
    connect(view_, &QPushButton::clicked, this, &ExtractionDialog::viewTable);
    auto* row = new QHBoxLayout;
    row->addWidget(writeQuery_);
    row->addWidget(view_);
    row->addStretch(1);
    layout->addLayout(row);
  } else if (tables_) {
    // In the written form the list is a reminder: a double click writes the name.
    connect(tables_->list(), &QListWidget::itemDoubleClicked, this,
            [this](QListWidgetItem* item) { queryEdit_->insertPlainText(item->text()); });
  }

  if (purpose == QueryPurpose::NewData) {
    settings_ = new ExtractionSettingsBox(values.query, this);
    layout->addWidget(settings_);
  }

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(buttons);
}

void ExtractionDialog::buildVariableList(const SymbolicMatrix& matrix) {
  for (size_t i = 0; i < matrix.variableCount(); ++i) {
    const SymbolicVariable& variable = matrix.variable(i);
    if (!variable.isCategorical()) continue;
    auto* item = new QListWidgetItem(toQt(variable.name), variables_);
    item->setData(Qt::UserRole, static_cast<int>(i));
    if (static_cast<int32_t>(i) == values_.variableIndex) variables_->setCurrentItem(item);
  }
}

ExtractionDialog::Values ExtractionDialog::collect() const {
  Values values = values_;
  values.query.tableName = tables_ && !written_ ? tables_->selectedName() : std::string();
  values.query.query = queryEdit_ ? fromQt(queryEdit_->toPlainText()) : std::string();
  if (settings_) settings_->store(values.query);
  if (variables_) {
    const QListWidgetItem* item = variables_->currentItem();
    values.variableIndex = item && item->isSelected() ? item->data(Qt::UserRole).toInt() : -1;
  }
  return values;
}

std::optional<Refusal> ExtractionDialog::check(const Values& values) const {
  switch (purpose_) {
    case QueryPurpose::NewData: return checkNewValues(values.query);
    case QueryPurpose::AddVariables:
      return checkAddVariablesValues(AddVariablesValues{values.query.tableName, values.query.query});
    case QueryPurpose::Taxonomy: break;
  }
  return checkTaxonomyValues(TaxonomyValues{values.variableIndex, values.query.tableName, values.query.query});
}

bool ExtractionDialog::confirmExistingTaxonomy(const Values& values) {
  if (purpose_ != QueryPurpose::Taxonomy || !matrix_ || values.variableIndex < 0) return true;
  const auto* variable = dynamic_cast<const CategoricalVariable*>(&matrix_->variable(values.variableIndex));
  if (!variable || !variable->hasTaxonomy()) return true;
  return askQuestion(this, QStringLiteral("Selected variable has already a taxonomy.\nDo you wish to continue ?"),
                     QMessageBox::Yes | QMessageBox::No, MessageIcon::Question) == QMessageBox::Yes;
}

void ExtractionDialog::accept() {
  const Values values = collect();
  if (purpose_ == QueryPurpose::Taxonomy && values.variableIndex < 0) {
    showRefusal(this, check(values));
    return;
  }
  if (!confirmExistingTaxonomy(values)) return;
  if (showRefusal(this, check(values))) {
    if (!settings_) return;
    const NewValues& q = values.query;
    if (q.sampling && (q.sampleSize < kMinSampleSize || q.sampleSize > kMaxSampleSize)) {
      settings_->sampleSizeEdit()->setFocus();
    } else if (q.minimumSet && q.minimum < 1) {
      settings_->minimumEdit()->setFocus();
    }
    return;
  }
  values_ = values;
  QDialog::accept();
}

void ExtractionDialog::openWrittenForm() {
  ExtractionDialog written(purpose_, true, collect(), link_, matrix_, this);
  if (written.exec() != QDialog::Accepted) {
    dataSource_->refresh();
    tables_->refresh();
    return;
  }
  values_ = written.values();
  QDialog::accept();
}

void ExtractionDialog::viewTable() {
  const std::string table = tables_->selectedName();
  const Connection* connection = link_.connection();
  if (table.empty() || !connection) {
    showMessageBox(this, kNoTable, MessageIcon::Warning);
    return;
  }
  DBViewDialog view(*connection, table, this);
  view.show();
  view.load();
  view.exec();
}

}  // namespace velda::ui
