#pragma once

#include <QDialog>
#include <optional>

#include "document/CommandValues.h"
#include "document/DialogChecks.h"

class QListWidget;
class QPlainTextEdit;
class QPushButton;

namespace velda {
class SymbolicMatrix;
}

namespace velda::ui {

class DataSourceBox;
class DataSourceLink;
class ExtractionSettingsBox;
class TableListBox;

// Which command a query dialog serves, which decides its parts and checks.
enum class QueryPurpose { NewData, AddVariables, Taxonomy };

// The query dialogs: a table or view chosen from the data source ("Write
// Query" opens the written form), or a written query. New data adds the
// extraction's "Settings"; a taxonomy adds the choice of its variable.
class ExtractionDialog : public QDialog {
  Q_OBJECT

 public:
  // The dialog's values, whatever its purpose.
  struct Values {
    NewValues query;  // table or written query, and the extraction's settings
    int32_t variableIndex = -1;
  };

  ExtractionDialog(QueryPurpose purpose, bool written, const Values& values, DataSourceLink& link,
                   const SymbolicMatrix* matrix, QWidget* parent = nullptr);

  static QString titleOf(QueryPurpose purpose, bool written);

  Values values() const { return values_; }

  TableListBox* tableList() const { return tables_; }
  QPlainTextEdit* queryEdit() const { return queryEdit_; }
  ExtractionSettingsBox* settings() const { return settings_; }
  QListWidget* variableList() const { return variables_; }

  void accept() override;

 private:
  void buildVariableList(const SymbolicMatrix& matrix);
  Values collect() const;
  std::optional<Refusal> check(const Values& values) const;
  [[nodiscard]] bool confirmExistingTaxonomy(const Values& values);
  void openWrittenForm();
  void viewTable();

  QueryPurpose purpose_;
  bool written_;
  Values values_;
  DataSourceLink& link_;
  const SymbolicMatrix* matrix_;
  DataSourceBox* dataSource_ = nullptr;
  TableListBox* tables_ = nullptr;
  QPlainTextEdit* queryEdit_ = nullptr;
  ExtractionSettingsBox* settings_ = nullptr;
  QListWidget* variables_ = nullptr;
  QPushButton* writeQuery_ = nullptr;
  QPushButton* view_ = nullptr;
};

}  // namespace velda::ui
