#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>
#include <string>

namespace velda {

class SymbolicMatrix;

// The project file (.gaj): one symbolic data matrix in full, so that a
// later run goes on without the database. A flat little-endian binary file
// that starts with the string "$KORVA$".

// Writes the project to a stream open for binary writing. Returns false,
// with "Save failed" ("Memory allocation failed" when memory runs out) in
// the last-error text, at the first write that does
// not complete or when the matrix holds a value that the file cannot (more
// than 65535 variables or modalities of one variable, a text longer than
// 65534 bytes).
bool writeProject(std::FILE* file, const SymbolicMatrix& matrix);

// Reads a project from a stream open for binary reading of a regular file
// (the magic string and counts first, then never more than the file's
// size), or from bytes in memory. Returns null with the reason in the last-error text:
// "Incorrect file type" when the file does not start with the magic string
// and the two counts, "Load failed" for anything else that is short,
// malformed or inconsistent, or when memory runs out.
std::unique_ptr<SymbolicMatrix> readProject(std::FILE* file);
std::unique_ptr<SymbolicMatrix> readProject(std::span<const unsigned char> bytes);
// The rest of a project whose magic string and two counts the caller has
// already read from the stream (so that it need not be seekable). Returns
// null with "Load failed" in the last-error text.
std::unique_ptr<SymbolicMatrix> readProjectBody(std::FILE* file, uint32_t individualCount, uint32_t assertionCount);
// Reads the magic string (length 8 with its zero) and the individual and
// assertion counts; false when they are not there.
bool readMagicAndCounts(std::FILE* file, uint32_t& individualCount, uint32_t& assertionCount);

enum class ProjectSave { Saved, CannotOpen, Failed };

// Replaces the file at path by the project once it is completely written,
// so that a failed save leaves the previous file as it was (a link is
// followed, permissions and owner are kept). CannotOpen: "Can not open
// file %s" (a destination that cannot be written, or no new file beside
// it); Failed: "Save failed" or "Memory allocation failed".
ProjectSave saveProject(const std::string& path, const SymbolicMatrix& matrix);

}  // namespace velda
