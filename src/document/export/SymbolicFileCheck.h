#pragma once

#include <string>

namespace velda {

// Reads a symbolic text file with the symbolic-file library and checks it.
// The library reports into "parser.dat" and ends the process on a syntax or
// semantic error; returns false (last-error text set) when the file cannot
// be opened.
bool checkSymbolicFile(const std::string& path);

}  // namespace velda
