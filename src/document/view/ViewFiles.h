#pragma once

#include <string>

namespace velda {

// The three temporary files that the view commands write their tables to:
// individuals ("dbind"), assertions and hordes ("dbgrp"), reduced assertions
// and reduced hordes ("dbred"). Each is created securely on first use, in
// TMPDIR or else the current directory, with a ".txt" suffix, kept for the
// document's life and deleted from disk when the document goes (or when
// the process ends through exit()).
class ViewFiles {
 public:
  enum Kind { Individuals, Groups, Reduced, KindCount };

  ViewFiles() = default;
  ~ViewFiles();
  ViewFiles(const ViewFiles&) = delete;
  ViewFiles& operator=(const ViewFiles&) = delete;

  // The file's name, creating the file on first use; empty when it cannot
  // be created.
  std::string nameFor(Kind kind);
  // Deletes the file and forgets its name (after it could not be written).
  void forget(Kind kind);
  // The name kept for this kind, empty when none was made yet.
  const std::string& keptName(Kind kind) const { return names_[kind]; }

  static const char* prefixOf(Kind kind);

 private:
  std::string names_[KindCount];
};

// Creates a new empty file named <dir>/<prefix>XXXXXX<suffix> with a unique
// random part, readable and writable by the user only, and returns its
// name; empty on failure. dir is TMPDIR when set, else ".".
std::string createTemporaryFile(const char* prefix, const char* suffix);

}  // namespace velda
