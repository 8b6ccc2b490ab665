#include <QApplication>
#include <clocale>
#include <ctime>

#include "common/MessageBox.h"
#include "common/Random15.h"
#include "formats/library/SymbolicLibrary.h"
#include "ui/frame/CMainFrame.h"
#include "ui/frame/Splash.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  // Qt follows the user's locale; numbers are read and written the C way.
  std::setlocale(LC_NUMERIC, "C");
  QApplication::setApplicationName(QStringLiteral("VELDA"));
  velda::seedRandom15(static_cast<uint32_t>(std::time(nullptr)));
  velda::symlib::SetSymbolicMessageBoxHandler(
      [](const std::string& text) { velda::showMessage(text, velda::MessageIcon::Warning); });

  velda::ui::CMainFrame frame;
  frame.show();
  velda::ui::showSplashOnce();
  return QApplication::exec();
}
