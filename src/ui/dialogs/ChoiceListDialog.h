#pragma once

#include <QDialog>
#include <string>
#include <utility>
#include <vector>

class QListWidget;

namespace velda::ui {

// A list with multiple choice: "Remove variables" ("Variable") and "Remove
// taxonomies" ("Taxonomy variable"). Items carry the variable's index.
class ChoiceListDialog : public QDialog {
  Q_OBJECT

 public:
  using Item = std::pair<int32_t, std::string>;

  ChoiceListDialog(const QString& title, const QString& label, const std::vector<Item>& items,
                   QWidget* parent = nullptr);

  // The chosen indexes, in list order.
  std::vector<int32_t> chosen() const;
  QListWidget* list() const { return list_; }

 private:
  QListWidget* list_;
};

}  // namespace velda::ui
