#pragma once

#include <cstdio>
#include <memory>
#include <ostream>
#include <span>
#include <string>

#include "document/CommandValues.h"

namespace velda {

class Assertion;
class ConsoleLog;
class FileOutputStream;
class SymbolicMatrix;
namespace symlib {
struct SymbolicFile;
}

// The steps that every export shares once the symbolic text of the matrix
// is in the temporary file.

// The temporary file that every export writes first, in the current
// directory, overwritten each time and never deleted.
constexpr const char* kExportTemporaryFile = "tempkvf.dat";

// A destination whose path holds "kvf" anywhere (a plain, case-sensitive
// substring test, folders included) gets symbolic text; any other gets XML.
bool isTextDestination(const std::string& path);

// The metadata file beside an XML destination: "_meta" before the last dot
// of the file name ("out.v2.xml" gives "out.v2_meta.xml"), or appended when
// the file name has no dot, so it always stays in the destination's folder.
std::string metadataNameFor(const std::string& destination);

// The export's temporary file, opened once for writing and reading back:
// the read-back reads the very file that was written, never a name looked
// up again, and a symbolic link or anything but a regular file at its name
// is refused.
class ExportTemporaryFile {
 public:
  ExportTemporaryFile();
  ~ExportTemporaryFile();
  ExportTemporaryFile(const ExportTemporaryFile&) = delete;
  ExportTemporaryFile& operator=(const ExportTemporaryFile&) = delete;

  // False when the file cannot be made (the caller says "Can not open
  // temporary file.").
  bool open();
  std::ostream& stream();
  // True when everything written reached the file; otherwise "Can not
  // write file tempkvf.dat" in the last-error text.
  bool finishWriting();
  // Reads the file back into the library's model, between the console
  // lines "building CompSymbMat..." and "[done]". The library ends the
  // process when the file does not pass its checks; false (last-error text
  // set) when the file cannot be read.
  bool readBack(symlib::SymbolicFile& model, ConsoleLog& console);

 private:
  std::FILE* file_ = nullptr;
  std::unique_ptr<FileOutputStream> stream_;
};

// The heading that an export prints and shows as status text, and what
// the console line before the destination's name says when it is written.
struct ExportTexts {
  const char* heading;
  const char* saving;  // "saving KVF file", followed by " <destination> ..."
};
ExportTexts exportTexts(ExportFormat format, const std::string& destination);

// Writes the rows straight as the chosen table (not Symbolic); false with
// the last-error text set when that fails.
bool writeTable(std::ostream& out, ExportFormat format, const SymbolicMatrix& matrix,
                std::span<const Assertion* const> labels, std::span<const Assertion* const> rows,
                const std::string& destination);

// Writes the model as symbolic text (the library's re-written form) or as
// XML; false with the last-error text set when that fails.
bool writeModel(symlib::SymbolicFile& model, std::ostream& out, bool xml, const std::string& destination);

}  // namespace velda
