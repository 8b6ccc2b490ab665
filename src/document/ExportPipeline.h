#pragma once

#include <ostream>
#include <span>
#include <string>

#include "document/CommandValues.h"

namespace velda {

class Assertion;
class ConsoleLog;
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

// Reads the temporary file back into the library's model, between the
// console lines "building CompSymbMat..." and "[done]". The library ends
// the process when the file does not pass its checks; false (last-error
// text set) when the file cannot be opened.
bool readTemporaryFile(symlib::SymbolicFile& model, ConsoleLog& console);

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
