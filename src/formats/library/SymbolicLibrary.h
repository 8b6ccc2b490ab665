#pragma once

#include <iosfwd>
#include <string>

#include "formats/library/MetaData.h"
#include "formats/library/SymbolicFile.h"

namespace velda::symlib {

// Reads a symbolic text file or an XML symbolic file into the model (which
// is cleared first), checks it and logs to "parser.dat" and standard error.
// Returns only when the syntactic pass, the semantic pass and the coherence
// check found no error; otherwise the process ends (status 1).
void ParseSymbolicFile(std::istream& input, const std::string& name, SymbolicFile& model);

// Reads a metadata XML file (syntactic pass only). Syntax errors are shown
// through the message-box handler and end the process (status 1).
void ParseMetadataFile(std::istream& input, const std::string& name, MetaData& metadata);
// The same for a caller that goes on without the metadata: a file with
// syntax errors shows the same message box, leaves the metadata empty and
// returns false instead of ending the process.
[[nodiscard]] bool TryParseMetadataFile(std::istream& input, const std::string& name, MetaData& metadata);

// Re-writes a model as a symbolic text file. False when memory runs out.
[[nodiscard]] bool WriteSymbolicFileText(const SymbolicFile& model, std::ostream& out);

// Writes a model as an XML symbolic file; an empty create_date is first
// filled with the current local time. False on a value that cannot be
// written (logged) or when memory runs out.
[[nodiscard]] bool WriteXmlSymbolicFile(SymbolicFile& model, std::ostream& out);

// Writes the metadata document. Out-of-range numbers are logged and written
// as stated by the messages; false only when memory runs out.
[[nodiscard]] bool WriteMetadataFile(const MetaData& metadata, std::ostream& out);

// Name of the metadata file beside an XML target: "_meta" before the last
// dot of the file name, or appended when the file name has no dot.
std::string MetadataFileName(const std::string& target);

// Every deliberate end of the process goes through this handler (default:
// std::exit). A replacement must not return (it may throw or longjmp).
using SymbolicExitHandler = void (*)(int status);
void SetSymbolicExitHandler(SymbolicExitHandler handler);

// The one-character pause after each error; it only ever happens when
// standard input is a terminal. Off by default.
void SetSymbolicPauseEnabled(bool enabled);

// Where the library's message boxes go (default: standard error).
using SymbolicMessageHandler = void (*)(const std::string& text);
void SetSymbolicMessageBoxHandler(SymbolicMessageHandler handler);

}  // namespace velda::symlib
