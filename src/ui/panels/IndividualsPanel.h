#pragma once

#include <QDockWidget>

class QListView;
class QStackedWidget;

namespace velda {
class SymbolicMatrix;
}

namespace velda::ui {

class IndividualListModel;

// "Individuals display": the matrix's individuals.
class IndividualsPanel : public QDockWidget {
  Q_OBJECT

 public:
  explicit IndividualsPanel(QWidget* parent = nullptr);

  void clear();
  void fill(const SymbolicMatrix& matrix);
  QListView* view() const { return view_; }
  bool isEmptyShown() const;

 private:
  QStackedWidget* pages_;
  QListView* view_;
  IndividualListModel* model_;
};

}  // namespace velda::ui
