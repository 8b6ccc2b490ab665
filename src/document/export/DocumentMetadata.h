#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace velda {

class SymbolicMatrix;
namespace symlib {
struct MetaData;
}

// The project's metadata: the survey-level description and where the data
// came from (query and data source), read beside a project and written
// beside it and beside XML exports. Always present; reset() returns it to
// its empty state ("unknown" facts, "none" treatments).
class DocumentMetadata {
 public:
  DocumentMetadata();
  ~DocumentMetadata();
  DocumentMetadata(const DocumentMetadata&) = delete;
  DocumentMetadata& operator=(const DocumentMetadata&) = delete;

  void reset();
  // Records the extraction's query and data source.
  void setOrigin(const std::string& sqlQuery, const std::string& odbcSource);
  // Reads a metadata file, open on a regular file (closed here), into
  // fresh objects. False, objects unchanged, when it cannot be read or the
  // library refuses it (after showing its message).
  bool load(std::FILE* file, const std::string& path);
  // Writes the metadata file of the matrix: the stored description, with
  // the original variables, the symbolic variables and objects taken from
  // the matrix. The previous file is replaced only once the new one is
  // complete; false with "Can not write file %s" in the last-error text.
  bool write(const std::string& path, const SymbolicMatrix& matrix) const;

  const symlib::MetaData& data() const { return *data_; }

 private:
  std::unique_ptr<symlib::MetaData> data_;
};

}  // namespace velda
