#pragma once

#include <QMainWindow>
#include <map>

#include "document/UserInterface.h"

class QAction;
class QToolBar;

namespace velda::ui {

class CKORVAView;
class DependencesPanel;
class IndividualsPanel;
class VariablesPanel;

// The main window: menus and toolbars built from the command table, the
// status bar, the three display panels and the console view.
class CMainFrame : public QMainWindow {
  Q_OBJECT

 public:
  explicit CMainFrame(QWidget* parent = nullptr);
  ~CMainFrame() override;

  CKORVAView& view() { return *view_; }
  QAction* action(int32_t commandId) const;
  QToolBar* toolBar(int32_t commandId) const;
  QDockWidget* panel(int32_t commandId) const;
  VariablesPanel* variablesPanel() const { return variables_; }
  IndividualsPanel* individualsPanel() const { return individuals_; }

  // Enabled and ticked states of every command from the document and the
  // frame.
  void updateCommandStates();
  // Runs a command as its menu item does.
  void runCommand(int32_t commandId);
  void redockToolBars();
  void redockPanels();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void buildActions();
  void buildMenus();
  void buildToolBars();
  void buildPanels();
  void connectView();
  [[nodiscard]] bool runFrameCommand(int32_t commandId);
  void showHelp();
  void onDisplayCleared(Display display);
  void onDisplayRefreshed(Display display);

  CKORVAView* view_;
  VariablesPanel* variables_;
  IndividualsPanel* individuals_;
  DependencesPanel* dependences_;
  std::map<int32_t, QAction*> actions_;
  std::map<int32_t, QToolBar*> toolBars_;
  std::map<int32_t, QDockWidget*> panels_;
};

}  // namespace velda::ui
