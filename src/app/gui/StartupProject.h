#pragma once

#include <QString>

namespace velda::ui {
class CMainFrame;
}

namespace velda::app {

// Opens the project named on the command line (`velda FILE.gaj`, as a file
// manager starts it) once the event loop runs, so the window is on screen
// first. It opens as File > Open would, metadata included; a file that
// cannot be read shows the usual message and leaves the program empty.
void openProjectAtStart(ui::CMainFrame& frame, const QString& argument);

}  // namespace velda::app
