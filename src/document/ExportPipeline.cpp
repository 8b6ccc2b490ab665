#include "document/ExportPipeline.h"

#include <fstream>

#include "common/ConsoleLog.h"
#include "common/LastError.h"
#include "formats/library/SymbolicFile.h"
#include "formats/library/SymbolicLibrary.h"

namespace velda {

bool isTextDestination(const std::string& path) { return path.find("kvf") != std::string::npos; }

std::string metadataNameFor(const std::string& destination) { return symlib::MetadataFileName(destination); }

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
