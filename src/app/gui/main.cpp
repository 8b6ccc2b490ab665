// velda: the desktop program.
//   velda [FILE.gaj]
#include <QApplication>
#include <QCommandLineParser>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "app/gui/StartupProject.h"
#include "common/FreedMemory.h"
#include "common/MessageBox.h"
#include "common/Random15.h"
#include "formats/library/SymbolicLibrary.h"
#include "ui/frame/CMainFrame.h"
#include "ui/frame/ManualLocation.h"
#include "ui/frame/Splash.h"

namespace {

constexpr int kExitUsage = 2;

// The project file named on the command line, or an empty text. --help and
// --version answer and end the program here, as does a usage error.
QString projectArgument(const QApplication& application) {
  QCommandLineParser parser;
  const QString manual = velda::ui::manualIndexPath();
  parser.setApplicationDescription(QStringLiteral("Symbolic data analysis: from database rows to symbolic objects.\n"
                                                  "The manual: %1")
                                       .arg(manual.isEmpty() ? QStringLiteral("(not found)") : manual));
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addPositionalArgument(QStringLiteral("FILE.gaj"), QStringLiteral("A project to open at start."));
  QString error;
  if (parser.parse(application.arguments())) {
    if (parser.isSet(QStringLiteral("help"))) parser.showHelp(0);
    if (parser.isSet(QStringLiteral("version"))) parser.showVersion();
    if (parser.positionalArguments().size() <= 1) return parser.positionalArguments().value(0);
    error = QStringLiteral("give one project file at most");
  } else {
    error = parser.errorText();
  }
  std::fprintf(stderr, "velda: %s\n\n%s", qPrintable(error), qPrintable(parser.helpText()));
  std::exit(kExitUsage);
}

}  // namespace

int main(int argc, char** argv) {
  velda::keepFreedMemoryForReuse();
  QApplication application(argc, argv);
  // Qt follows the user's locale; numbers are read and written the C way.
  std::setlocale(LC_NUMERIC, "C");
  QApplication::setApplicationName(QStringLiteral("VELDA"));
  QApplication::setApplicationVersion(QStringLiteral(VELDA_VERSION));
  const QString project = projectArgument(application);
  velda::seedRandom15(static_cast<uint32_t>(std::time(nullptr)));
  velda::symlib::SetSymbolicMessageBoxHandler(
      [](const std::string& text) { velda::showMessage(text, velda::MessageIcon::Warning); });

  velda::ui::CMainFrame frame;
  frame.show();
  velda::ui::showSplashOnce();
  if (!project.isEmpty()) velda::app::openProjectAtStart(frame, project);
  return QApplication::exec();
}
