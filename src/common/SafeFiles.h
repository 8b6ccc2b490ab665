#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace velda {

// Opening files whose names come from outside without being led astray:
// a FIFO that would block, a device that never ends, a directory, or a
// symbolic link planted at a fixed name.

// Opens a file for binary reading only when it is a regular file; null
// otherwise (also when it cannot be opened).
std::FILE* openRegularFile(const std::string& path);

// Appends the rest of a file to bytes: of a regular file never more than
// its size, of a stream on anything else (a pipe) up to its end. False on a read error or when
// memory runs out.
[[nodiscard]] bool readRestOfFile(std::FILE* file, std::vector<unsigned char>& bytes);
[[nodiscard]] bool readRestOfFile(std::FILE* file, std::string& text);

// Creates or empties a file of fixed name in the current folder and opens
// it for writing and reading back through the same descriptor. Null when
// the name is a symbolic link or anything but a regular file, or when it
// cannot be opened.
std::FILE* openFixedNameFile(const char* name);

}  // namespace velda
