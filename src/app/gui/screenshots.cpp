// Writes pictures of the desktop program for the manual and for review:
// the main window with the sample data, every dialog and the volume matrix.
//   velda-screenshots OUTPUT_FOLDER   (VELDA_SAMPLE_DB names the sample database)
// It runs on a real X display (make screenshots starts a private Xvfb with a
// window manager) and reads each picture back from the screen, frame and
// caption included, so that the pictures show what a user sees, repaint
// faults too.

#include <QApplication>
#include <QCheckBox>
#include <QContextMenuEvent>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QScreen>
#include <QThread>
#include <QTimer>
#include <QWindow>
#include <clocale>
#include <cstdio>
#include <cstdlib>

#include "common/Random15.h"
#include "db/Connection.h"
#include "model/CategoricalVariable.h"
#include "model/SymbolicMatrix.h"
#include "ui/dialogs/ChoiceListDialog.h"
#include "ui/dialogs/DBViewDialog.h"
#include "ui/dialogs/DataSourceDialog.h"
#include "ui/dialogs/DependenceDialog.h"
#include "ui/dialogs/DependencesDialog.h"
#include "ui/dialogs/ExportDialog.h"
#include "ui/dialogs/ExtractionDialog.h"
#include "ui/dialogs/JoinDialog.h"
#include "ui/dialogs/NumberParameterDialog.h"
#include "ui/dialogs/ProgressDialog.h"
#include "ui/dialogs/TaxonomiesDialog.h"
#include "ui/dialogs/VariablePropertiesDialog.h"
#include "ui/dialogs/VolumeMatrixDialog.h"
#include "ui/frame/AboutDialog.h"
#include "ui/frame/CKORVAView.h"
#include "ui/frame/CMainFrame.h"
#include "ui/widgets/ExtractionSettingsBox.h"
#include "ui/widgets/FileDialogs.h"
#include "ui/widgets/ModalDriver.h"
#include "ui/widgets/OdbcSources.h"
#include "ui/widgets/TableListBox.h"

using namespace velda;
using namespace velda::ui;

namespace {

QString outputFolder;

// Lets the window manager place and frame a window and Qt paint it: waits
// until the window is exposed and its frame has stopped moving.
void settle(QWidget& widget) {
  QElapsedTimer clock;
  clock.start();
  QRect last;
  int steady = 0;
  while (clock.elapsed() < 3000 && steady < 3) {
    QApplication::processEvents(QEventLoop::AllEvents, 30);
    QThread::msleep(30);
    const QWindow* window = widget.windowHandle();
    if (!window || !window->isExposed()) continue;
    steady = widget.frameGeometry() == last ? steady + 1 : 0;
    last = widget.frameGeometry();
  }
  QApplication::processEvents();
}

// The window's place on the screen, read back from the X server's root
// window (not a fresh rendering of the widget).
void saveShown(QWidget& widget, const char* name) {
  settle(widget);
  const QRect frame = widget.frameGeometry();
  const QPixmap shown = widget.screen()->grabWindow(0, frame.x(), frame.y(), frame.width(), frame.height());
  const QString path = QDir(outputFolder).filePath(QString::fromLatin1(name) + QStringLiteral(".png"));
  if (!shown.save(path)) std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
}

void save(QWidget& widget, const char* name) {
  widget.show();
  widget.adjustSize();
  widget.raise();
  widget.activateWindow();
  saveShown(widget, name);
  widget.hide();
}

// Pictures the next pop-up menu while it is open, then closes it.
void onNextPopup(const char* name) {
  auto* timer = new QTimer;
  timer->setInterval(5);
  QObject::connect(timer, &QTimer::timeout, [timer, name] {
    QWidget* popup = QApplication::activePopupWidget();
    if (!popup || !popup->isVisible()) return;
    timer->stop();
    timer->deleteLater();
    saveShown(*popup, name);
    popup->close();
  });
  timer->start();
}

void choose(QListWidget* list, const char* text) {
  const QList<QListWidgetItem*> found = list->findItems(QString::fromLatin1(text), Qt::MatchExactly);
  if (found.isEmpty()) return;
  list->setCurrentItem(found.front());
  found.front()->setSelected(true);
}

// The main job of the sample database, driven through the real dialogs;
// the extraction dialog opens on the sample by itself.
[[nodiscard]] bool loadSample(CMainFrame& frame) {
  Document& document = frame.view().document();
  if (sampleConnectionString().empty()) return false;
  onNextModal<ExtractionDialog>([](ExtractionDialog* dialog) {
    saveShown(*dialog, "extraction-on-sample");
    choose(dialog->tableList()->list(), "survey");
    dialog->settings()->samplingBox()->setChecked(true);
    dialog->settings()->sampleSizeEdit()->setText(QStringLiteral("50"));
    dialog->settings()->minimumBox()->setChecked(true);
    dialog->settings()->minimumEdit()->setText(QStringLiteral("3"));
    dialog->accept();
  });
  frame.runCommand(ID_FILE_NEW);
  if (!document.matrix()) return false;
  saveShown(frame, "main-window-after-new");
  onNextModal<ExtractionDialog>([](ExtractionDialog* dialog) {
    choose(dialog->variableList(), "town");
    choose(dialog->tableList()->list(), "towns");
    dialog->accept();
  });
  frame.runCommand(ID_CREATE_TAXONOMY);
  saveShown(frame, "main-window-after-taxonomy");
  onNextModal<DependenceDialog>([](DependenceDialog* dialog) {
    choose(dialog->motherList(), "occupation");
    choose(dialog->modalityList(), "manager");
    choose(dialog->modalityList(), "professional");
    choose(dialog->daughterList(), "income");
    onNextModal<QMessageBox>([](QMessageBox* box) {
      saveShown(*box, "dependence-question");
      box->button(QMessageBox::Yes)->click();
    });
    dialog->accept();
  });
  frame.runCommand(ID_ADD_DEPENDENCE);
  saveShown(frame, "main-window-after-dependence");
  onNextModal<NumberParameterDialog>([](NumberParameterDialog* dialog) { dialog->accept(); });
  frame.runCommand(ID_REDUCE_ASSERTIONS);
  return true;
}

void saveExtractionDialogs(CKORVAView& view, const SymbolicMatrix& matrix) {
  ExtractionDialog::Values values;
  {
    ExtractionDialog dialog(QueryPurpose::NewData, false, values, view, &matrix);
    choose(dialog.tableList()->list(), "survey");
    save(dialog, "extraction");
  }
  {
    values.query.query = "select person_id, region, town, sex, age, income, weight from survey";
    ExtractionDialog dialog(QueryPurpose::NewData, true, values, view, &matrix);
    dialog.settings()->samplingBox()->setChecked(true);
    save(dialog, "sql-query");
  }
  {
    ExtractionDialog dialog(QueryPurpose::AddVariables, false, ExtractionDialog::Values{}, view, &matrix);
    save(dialog, "add-individuals");
  }
  {
    ExtractionDialog dialog(QueryPurpose::Taxonomy, false, ExtractionDialog::Values{}, view, &matrix);
    save(dialog, "create-taxonomy");
  }
  {
    ExtractionDialog::Values taxonomy;
    taxonomy.query.query = "select distinct town, region, country from towns";
    ExtractionDialog dialog(QueryPurpose::Taxonomy, true, taxonomy, view, &matrix);
    save(dialog, "taxonomy-query");
  }
  if (const Connection* connection = view.connection()) {
    DBViewDialog dialog(*connection, "survey");
    dialog.load();
    save(dialog, "dbview");
  }
  DataSourceDialog source(sampleConnectionString());
  save(source, "data-source");
}

void saveMatrixDialogs(const SymbolicMatrix& matrix) {
  DependenceDialog dependence(matrix, DependenceValues{});
  choose(dependence.motherList(), "occupation");
  choose(dependence.modalityList(), "manager");
  save(dependence, "add-dependence");

  std::vector<ChoiceListDialog::Item> items;
  for (size_t i = 0; i < matrix.variableCount(); ++i)
    items.emplace_back(static_cast<int32_t>(i), matrix.variable(i).name);
  ChoiceListDialog remove(QStringLiteral("Remove variables"), QStringLiteral("Variable"), items);
  save(remove, "remove-variables");
  ChoiceListDialog removeTaxonomies(QStringLiteral("Remove taxonomies"), QStringLiteral("Taxonomy variable"),
                                    {items.front()});
  save(removeTaxonomies, "remove-taxonomies");

  VariablePropertiesValues properties;
  for (size_t i = 0; i < matrix.variableCount(); ++i) {
    VariableProperty property;
    property.active = matrix.variable(i).active != 0;
    if (const auto* categorical = dynamic_cast<const CategoricalVariable*>(&matrix.variable(i)))
      property.mode = categorical->mode;
    properties.variables.push_back(property);
  }
  VariablePropertiesDialog propertiesDialog(matrix, properties);
  save(propertiesDialog, "variables-properties");
  TaxonomiesDialog taxonomies(matrix);
  save(taxonomies, "taxonomies");
  DependencesDialog dependences(matrix);
  save(dependences, "view-dependences");
  VolumeMatrixDialog volumes(matrix);
  volumes.resize(760, 620);
  save(volumes, "volume-matrix");
}

void saveFormDialogs() {
  ExportValues exportValues;
  exportValues.file = "/home/user/survey.kvf";
  exportValues.title = "Household survey";
  exportValues.reducedAssertionsAvailable = true;
  ExportDialog exportDialog(exportValues);
  save(exportDialog, "export");
  JoinDialog join(JoinValues{"/home/user/north.gaj", "/home/user/south.gaj"});
  save(join, "join");
  auto noCheck = [](int32_t) { return std::optional<Refusal>(); };
  NumberParameterDialog reduction(QStringLiteral("Reduction parameter"), QStringLiteral("Reduction threshold"), 80,
                                  noCheck);
  save(reduction, "reduction-parameter");
  NumberParameterDialog division(QStringLiteral("Division Parameter"), QStringLiteral("Div Class number"), 3, noCheck);
  save(division, "division-parameter");
  ProgressDialog progress(QStringLiteral("Reducing assertions"));
  progress.setLine1("Reduction in progress...");
  progress.setLine2("Assertion Occitanie");
  save(progress, "progress");
  AboutDialog about;
  save(about, "about");

  // The open dialog with its "Ignore MetaData" box, pictured while it runs.
  FileRequest open;
  open.filter = "VELDA file (*.gaj)";
  open.defaultSuffix = "gaj";
  open.offerIgnoreMetadata = true;
  onNextModal<QFileDialog>([](QFileDialog* dialog) {
    saveShown(*dialog, "open");
    dialog->reject();
  });
  FileChoice choice;
  static_cast<void>(chooseFile(nullptr, open, choice));  // the dialog is shot, then dismissed
}

// The Window menu with its ticks, and the console's pop-up menu.
void saveMenus(CMainFrame& frame) {
  for (QAction* entry : frame.menuBar()->actions()) {
    if (entry->text() != QStringLiteral("&Window")) continue;
    onNextPopup("window-menu");
    entry->menu()->exec(frame.menuBar()->mapToGlobal(frame.menuBar()->actionGeometry(entry).bottomLeft()));
  }
  QWidget* console = frame.view().viewport();
  const QPoint at(40, 40);
  onNextPopup("console-menu");
  QContextMenuEvent event(QContextMenuEvent::Mouse, at, console->mapToGlobal(at));
  QApplication::sendEvent(console, &event);
}

// Save (a new project asks for its name), then Open of what was saved.
void saveAndOpen(CMainFrame& frame, const QString& project) {
  for (int32_t command : {ID_FILE_SAVE, ID_FILE_OPEN}) {
    onNextModal<QFileDialog>([project](QFileDialog* dialog) {
      dialog->selectFile(project);
      static_cast<QDialog*>(dialog)->accept();
    });
    frame.runCommand(command);
  }
  saveShown(frame, "main-window-after-open");
}

// Open of a file that is no project: the "Load failed" box.
void saveLoadFailed(CMainFrame& frame) {
  const QString junk = QDir(outputFolder).filePath(QStringLiteral("not-a-project.gaj"));
  QFile file(junk);
  if (!file.open(QIODevice::WriteOnly)) return;
  file.write("not a project\n");
  file.close();
  onNextModal<QFileDialog>([junk](QFileDialog* dialog) {
    onNextModal<QMessageBox>([](QMessageBox* box) {
      saveShown(*box, "message-load-failed");
      box->accept();
    });
    dialog->selectFile(junk);
    static_cast<QDialog*>(dialog)->accept();
  });
  frame.runCommand(ID_FILE_OPEN);
  QFile::remove(junk);
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  std::setlocale(LC_NUMERIC, "C");
  if (argc != 2) {
    std::fprintf(stderr, "usage: velda-screenshots OUTPUT_FOLDER\n");
    return 2;
  }
  if (QGuiApplication::platformName() != QStringLiteral("xcb")) {
    std::fprintf(stderr, "velda-screenshots needs an X display (scripts/with-xvfb.sh gives one)\n");
    return 2;
  }
  outputFolder = QString::fromLocal8Bit(argv[1]);
  QDir().mkpath(outputFolder);
  // The export and the division write their files in the current folder.
  QDir::setCurrent(outputFolder);
  seedRandom15(2003);

  CMainFrame frame;
  frame.show();
  saveShown(frame, "main-window-empty");
  if (!loadSample(frame)) {
    std::fprintf(stderr, "the sample database could not be loaded (is VELDA_SAMPLE_DB set?)\n");
    return 1;
  }
  saveShown(frame, "main-window");
  saveMenus(frame);

  const SymbolicMatrix& matrix = *frame.view().document().matrix();
  saveExtractionDialogs(frame.view(), matrix);
  saveMatrixDialogs(matrix);
  saveFormDialogs();
  saveAndOpen(frame, QDir(outputFolder).filePath(QStringLiteral("survey.gaj")));
  saveLoadFailed(frame);
  frame.view().document().console().clear();
  return 0;
}
