#include "app/gui/StartupProject.h"

#include <QFile>
#include <QFileInfo>
#include <QTimer>

#include "ui/frame/CKORVAView.h"
#include "ui/frame/CMainFrame.h"

namespace velda::app {

void openProjectAtStart(ui::CMainFrame& frame, const QString& argument) {
  // The name goes to the file system as the command line gave it.
  const QByteArray bytes = QFile::encodeName(QFileInfo(argument).absoluteFilePath());
  const std::string path(bytes.constData(), static_cast<size_t>(bytes.size()));
  QTimer::singleShot(0, &frame, [&frame, path] {
    Document& document = frame.view().document();
    // A project that does not open has said why; the window stays empty.
    static_cast<void>(document.guardMemory([&document, &path] { return document.openFile(path, false); }));
    frame.updateCommandStates();
  });
}

}  // namespace velda::app
