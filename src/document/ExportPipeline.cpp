#include "document/ExportPipeline.h"

#include <fstream>

#include "common/ConsoleLog.h"
#include "common/LastError.h"
#include "formats/RsdaTableWriter.h"
#include "formats/TidyTableWriter.h"
#include "formats/library/SymbolicFile.h"
#include "formats/library/SymbolicLibrary.h"

namespace velda {

bool isTextDestination(const std::string& path) { return path.find("kvf") != std::string::npos; }

std::string metadataNameFor(const std::string& destination) { return symlib::MetadataFileName(destination); }

ExportTexts exportTexts(ExportFormat format, const std::string& destination) {
  switch (format) {
    case ExportFormat::RsdaTable:
      return {"- Creating RSDA table -", "saving RSDA table"};
    case ExportFormat::TidyTable:
      return {"- Creating tidy table -", "saving tidy table"};
    case ExportFormat::Symbolic:
      break;
  }
  if (isTextDestination(destination)) return {"- Creating Korva file -", "saving KVF file"};
  return {"- Creating XML file -", "saving XML file"};
}

bool writeTable(std::ostream& out, ExportFormat format, const SymbolicMatrix& matrix,
                std::span<const Assertion* const> labels, std::span<const Assertion* const> rows,
                const std::string& destination) {
  const bool written = format == ExportFormat::RsdaTable ? WriteRsdaTable(out, matrix, labels, rows)
                                                         : WriteTidyTable(out, matrix, labels, rows);
  if (!written) return false;
  if (!out.flush()) {
    setError("Writing %s failed", destination.c_str());
    return false;
  }
  return true;
}

bool readTemporaryFile(symlib::SymbolicFile& model, ConsoleLog& console) {
  console.print("building CompSymbMat...");
  std::ifstream in(kExportTemporaryFile, std::ios::binary);
  if (!in) {
    setError("Can not open temporary file.");
    return false;
  }
  symlib::ParseSymbolicFile(in, "nom", model);
  console.print("[done]");
  return true;
}

bool writeModel(symlib::SymbolicFile& model, std::ostream& out, bool xml, const std::string& destination) {
  const bool written = xml ? symlib::WriteXmlSymbolicFile(model, out) : symlib::WriteSymbolicFileText(model, out);
  if (!written || !out.flush()) {
    setError("Writing %s failed", destination.c_str());
    return false;
  }
  return true;
}

}  // namespace velda
