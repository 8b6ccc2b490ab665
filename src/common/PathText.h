#pragma once

#include <string>

namespace velda {

// File paths are the file system's bytes, passed to the system as they came
// from the user (the command line, a file dialog), while the program's texts
// are Latin-1. A path shown in a message, a console line or a window title
// goes through pathForDisplay: a name in UTF-8 (the usual file-system
// encoding) gives its Latin-1 form, a character that Latin-1 cannot hold
// becoming '?'; any other bytes are shown as they are.
std::string pathForDisplay(const std::string& path);

}  // namespace velda
