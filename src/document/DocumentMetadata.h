#pragma once

#include <memory>
#include <string>

namespace velda {

class SymbolicMatrix;

// The project's metadata (the header and the per-variable records) that
// is read beside a project and written beside it and beside XML exports.
// Always present; reset() returns it to its empty state.
class DocumentMetadata {
 public:
  DocumentMetadata();
  ~DocumentMetadata();
  DocumentMetadata(const DocumentMetadata&) = delete;
  DocumentMetadata& operator=(const DocumentMetadata&) = delete;

  void reset();
  // Reads a metadata file into fresh objects; false (objects unchanged)
  // when it cannot be read.
  bool load(const std::string& path);
  // Writes the metadata file of the matrix; false with the last-error text.
  bool write(const std::string& path, const SymbolicMatrix& matrix) const;

 private:
  struct Objects;
  std::unique_ptr<Objects> objects_;
};

}  // namespace velda
