#include "ui/frame/CMainFrame.h"

#include <QAction>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QDockWidget>
#include <QMenuBar>
#include <QShortcut>
#include <QStatusBar>
#include <QToolBar>
#include <QUrl>

#include "document/CommandTable.h"
#include "ui/frame/AboutDialog.h"
#include "ui/frame/CKORVAView.h"
#include "ui/frame/ManualLocation.h"
#include "ui/panels/DependencesPanel.h"
#include "ui/panels/IndividualsPanel.h"
#include "ui/panels/VariablesPanel.h"
#include "ui/widgets/CommandIcons.h"

namespace velda::ui {

namespace {

constexpr int32_t kSeparator = 0;

struct ToolBarSpec {
  int32_t showCommand;
  const char* caption;
  std::vector<int32_t> buttons;  // kSeparator between groups
};

const std::vector<ToolBarSpec>& toolBarSpecs() {
  static const std::vector<ToolBarSpec> specs = {
      {ID_MAIN_TOOLBAR,
       "Main",
       {ID_FILE_NEW, ID_FILE_OPEN, ID_FILE_SAVE, kSeparator, ID_EXPORT, ID_EXPORT_AND_VIEW, ID_EXPORT_HORDES,
        kSeparator, ID_HELP_FINDER}},
      {ID_MODIFY_TOOLBAR,
       "Modify",
       {ID_ADD_SINGLE_VALUED_VARIABLES, ID_ADD_SET_VALUED_VARIABLE, ID_REMOVE_VARIABLES, kSeparator, ID_CREATE_TAXONOMY,
        ID_REMOVE_TAXONOMIES, ID_ADD_DEPENDENCE, kSeparator, ID_REDUCE_ASSERTIONS, ID_DIVIDE_ASSERTIONS,
        ID_REDUCE_HORDES, kSeparator, ID_VARIABLE_PROPERTIES}},
      {ID_VIEW_TOOLBAR,
       "View",
       {ID_VIEW_INDIVIDUALS, ID_VIEW_ASSERTIONS, ID_VIEW_HORDES, ID_VIEW_TAXONOMIES, ID_VIEW_DEPENDENCES, kSeparator,
        ID_VIEW_REDUCED_ASSERTIONS, ID_VIEW_VOLUME_MATRIX, ID_VIEW_REDUCED_HORDES}},
      {ID_WINDOWS_TOOLBAR,
       "Windows",
       {ID_VARIABLES_DISPLAY, ID_INDIVIDUALS_DISPLAY, ID_DEPENDENCES_DISPLAY, ID_REDOCK_DISPLAYS, ID_REFRESH_DISPLAYS}},
  };
  return specs;
}

// Where each panel docks at start and after "Redock displays".
Qt::DockWidgetArea initialArea(int32_t showCommand) {
  return showCommand == ID_DEPENDENCES_DISPLAY ? Qt::RightDockWidgetArea : Qt::LeftDockWidgetArea;
}

// The menu that holds a command, by the table's menu names.
const char* menuTitle(Menu menu) {
  switch (menu) {
    case Menu::File: return "&File";
    case Menu::Modify: return "&Modify";
    case Menu::View: return "&View";
    case Menu::ToolBars: return "&ToolBars";
    case Menu::Window: return "&Window";
    case Menu::Console: return "&Console";
    case Menu::Help: return "&?";
    case Menu::None: break;
  }
  return nullptr;
}

}  // namespace

CMainFrame::CMainFrame(QWidget* parent) : QMainWindow(parent) {
  setObjectName(QStringLiteral("CMainFrame"));
  setWindowTitle(QStringLiteral("VELDA"));
  view_ = new CKORVAView(this);
  setCentralWidget(view_);
  statusBar()->showMessage(QString());
  buildActions();
  buildMenus();
  buildToolBars();
  buildPanels();
  connectView();
  // F1 opens the manual wherever the focus is.
  auto* contextHelp = new QShortcut(QKeySequence::HelpContents, this);
  connect(contextHelp, &QShortcut::activated, this, &CMainFrame::showHelp);
  resize(1000, 700);
  updateCommandStates();
}

// The children outlive this part of the frame: their signals must not
// reach it any more.
CMainFrame::~CMainFrame() {
  for (const auto& [id, bar] : toolBars_) bar->disconnect(this);
  for (const auto& [id, dock] : panels_) dock->disconnect(this);
  view_->disconnect(this);
}

QAction* CMainFrame::action(int32_t commandId) const {
  const auto found = actions_.find(commandId);
  return found == actions_.end() ? nullptr : found->second;
}

QToolBar* CMainFrame::toolBar(int32_t commandId) const {
  const auto found = toolBars_.find(commandId);
  return found == toolBars_.end() ? nullptr : found->second;
}

QDockWidget* CMainFrame::panel(int32_t commandId) const {
  const auto found = panels_.find(commandId);
  return found == panels_.end() ? nullptr : found->second;
}

void CMainFrame::buildActions() {
  for (const CommandInfo& command : commandTable()) {
    if (command.menu == Menu::None) continue;
    const QString menuText = QString::fromLatin1(command.menuText);
    const qsizetype tab = menuText.indexOf(QLatin1Char('\t'));
    auto* action = new QAction(menuText.left(tab < 0 ? menuText.size() : tab), this);
    if (tab >= 0) action->setShortcut(QKeySequence(menuText.mid(tab + 1)));
    if (command.prompt) action->setStatusTip(QString::fromLatin1(command.prompt));
    if (command.tooltip) action->setToolTip(QString::fromLatin1(command.tooltip));
    action->setIcon(commandIcon(command.id));
    action->setCheckable(command.checkable);
    // Most styles mark a checked item that has an icon only by a frame
    // around the icon: the show/hide items keep their icon for the toolbar
    // and show a real tick in the menu.
    action->setIconVisibleInMenu(!command.checkable);
    action->setData(command.id);
    const int32_t id = command.id;
    connect(action, &QAction::triggered, this, [this, id] { runCommand(id); });
    actions_[command.id] = action;
  }
}

void CMainFrame::buildMenus() {
  std::map<Menu, QMenu*> menus;
  for (Menu menu : {Menu::File, Menu::Modify, Menu::View, Menu::ToolBars, Menu::Window, Menu::Help}) {
    menus[menu] = menuBar()->addMenu(QString::fromLatin1(menuTitle(menu)));
  }
  menus[Menu::Console] = menus[Menu::Window]->addMenu(QString::fromLatin1(menuTitle(Menu::Console)));
  for (const CommandInfo& command : commandTable()) {
    if (command.menu == Menu::None) continue;
    if (command.id == ID_APP_EXIT || command.id == ID_REDOCK_TOOLBARS || command.id == ID_VARIABLES_DISPLAY ||
        command.id == ID_APP_ABOUT) {
      menus[command.menu]->addSeparator();
    }
    menus[command.menu]->addAction(actions_[command.id]);
  }
}

void CMainFrame::buildToolBars() {
  for (const ToolBarSpec& spec : toolBarSpecs()) {
    QToolBar* bar = addToolBar(QString::fromLatin1(spec.caption));
    bar->setObjectName(QString::fromLatin1(spec.caption));
    bar->setIconSize(QSize(16, 15));
    for (int32_t id : spec.buttons) {
      if (id == kSeparator) {
        bar->addSeparator();
      } else {
        bar->addAction(actions_[id]);
      }
    }
    connect(bar, &QToolBar::visibilityChanged, this, &CMainFrame::updateCommandStates);
    toolBars_[spec.showCommand] = bar;
  }
}

void CMainFrame::buildPanels() {
  variables_ = new VariablesPanel(this);
  individuals_ = new IndividualsPanel(this);
  dependences_ = new DependencesPanel(this);
  panels_[ID_VARIABLES_DISPLAY] = variables_;
  panels_[ID_INDIVIDUALS_DISPLAY] = individuals_;
  panels_[ID_DEPENDENCES_DISPLAY] = dependences_;
  for (const auto& [id, dock] : panels_) {
    addDockWidget(initialArea(id), dock);
    connect(dock, &QDockWidget::visibilityChanged, this, &CMainFrame::updateCommandStates);
  }
}

void CMainFrame::connectView() {
  connect(view_, &CKORVAView::statusTextChanged, this, [this](const QString& text) {
    statusBar()->showMessage(text);
    statusBar()->repaint();
  });
  connect(view_, &CKORVAView::titleChanged, this, &QWidget::setWindowTitle);
  connect(view_, &CKORVAView::displayCleared, this, &CMainFrame::onDisplayCleared);
  connect(view_, &CKORVAView::displayRefreshed, this, &CMainFrame::onDisplayRefreshed);
  connect(view_, &CKORVAView::stateChanged, this, &CMainFrame::updateCommandStates);
}

void CMainFrame::onDisplayCleared(Display display) {
  switch (display) {
    case Display::Variables: variables_->clear(); return;
    case Display::Individuals: individuals_->clear(); return;
    case Display::Dependences: dependences_->clear(); return;
  }
}

void CMainFrame::onDisplayRefreshed(Display display) {
  const SymbolicMatrix* matrix = view_->document().matrix();
  if (!matrix) {
    onDisplayCleared(display);
    return;
  }
  switch (display) {
    case Display::Variables: variables_->fill(*matrix); return;
    case Display::Individuals: individuals_->fill(*matrix); return;
    case Display::Dependences: dependences_->fill(*matrix); return;
  }
}

void CMainFrame::updateCommandStates() {
  const Document& document = view_->document();
  for (const auto& [id, action] : actions_) {
    if (QToolBar* bar = toolBar(id)) {
      action->setChecked(bar->isVisible());
    } else if (QDockWidget* dock = panel(id)) {
      action->setChecked(dock->isVisible());
    }
    action->setEnabled(document.isEnabled(id));
  }
}

void CMainFrame::runCommand(int32_t commandId) {
  if (!runFrameCommand(commandId)) view_->document().execute(commandId);
  updateCommandStates();
}

// The commands that only place things on screen; false for the document's.
bool CMainFrame::runFrameCommand(int32_t commandId) {
  if (QToolBar* bar = toolBar(commandId)) {
    bar->setVisible(!bar->isVisible());
    return true;
  }
  if (QDockWidget* dock = panel(commandId)) {
    dock->setVisible(!dock->isVisible());
    return true;
  }
  switch (commandId) {
    case ID_REDOCK_TOOLBARS: redockToolBars(); return true;
    case ID_REDOCK_DISPLAYS: redockPanels(); return true;
    case ID_HELP_FINDER: showHelp(); return true;
    case ID_HOME_PAGE: showHelp(); return true;
    case ID_APP_ABOUT: {
      AboutDialog about(this);
      about.exec();
      return true;
    }
    case ID_APP_EXIT: close(); return true;
    default: return false;
  }
}

void CMainFrame::redockToolBars() {
  for (const ToolBarSpec& spec : toolBarSpecs()) {
    QToolBar* bar = toolBars_[spec.showCommand];
    addToolBar(Qt::TopToolBarArea, bar);
    bar->show();
  }
}

void CMainFrame::redockPanels() {
  for (const auto& [id, dock] : panels_) {
    dock->setFloating(false);
    addDockWidget(initialArea(id), dock);
    dock->show();
  }
}

void CMainFrame::showHelp() {
  const QString index = manualIndexPath();
  if (index.isEmpty() || !QDesktopServices::openUrl(QUrl::fromLocalFile(index))) {
    view_->showMessage("Creation of viewer subprocess failed", MessageIcon::Warning);
  }
}

void CMainFrame::closeEvent(QCloseEvent* event) {
  if (!view_->document().execute(ID_APP_EXIT)) {
    event->ignore();
    return;
  }
  event->accept();
}

}  // namespace velda::ui
