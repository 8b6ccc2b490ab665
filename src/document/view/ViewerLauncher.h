#pragma once

#include <string>
#include <vector>

#include "document/UserInterface.h"

namespace velda {

// The programs tried, in order, to show a file: the one named by the
// environment variable VELDA_VIEWER when it is set, else xdg-open first,
// then for XML the file browsers, then the text editors: all of them
// programs that open a window of their own.
std::vector<std::string> viewerPrograms(ViewerKind kind);

// Starts the first program of the list that can be started, with the file
// as its only argument, without waiting for it (it is not left as a
// zombie). False when none could be started.
bool launchViewer(const std::string& path, ViewerKind kind);

}  // namespace velda
