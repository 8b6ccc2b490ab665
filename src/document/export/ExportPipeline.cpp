#include "document/export/ExportPipeline.h"

#include <sstream>

#include "common/ConsoleLog.h"
#include "common/FileStream.h"
#include "common/LastError.h"
#include "common/PathText.h"
#include "common/SafeFiles.h"
#include "formats/RsdaTableWriter.h"
#include "formats/TidyTableWriter.h"
#include "formats/library/SymbolicFile.h"
#include "formats/library/SymbolicLibrary.h"

namespace velda {

bool isTextDestination(const std::string& path) { return path.find("kvf") != std::string::npos; }

std::string metadataNameFor(const std::string& destination) { return symlib::MetadataFileName(destination); }

ExportTexts exportTexts(ExportFormat format, const std::string& destination) {
  switch (format) {
    case ExportFormat::RsdaTable: return {"- Creating RSDA table -", "saving RSDA table"};
    case ExportFormat::TidyTable: return {"- Creating tidy table -", "saving tidy table"};
    case ExportFormat::Symbolic: break;
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
    setError("Can not write file %s", pathForDisplay(destination).c_str());
    return false;
  }
  return true;
}

ExportTemporaryFile::ExportTemporaryFile() = default;

ExportTemporaryFile::~ExportTemporaryFile() {
  stream_.reset();
  if (file_) std::fclose(file_);
}

bool ExportTemporaryFile::open() {
  file_ = openFixedNameFile(kExportTemporaryFile);
  if (!file_) return false;
  stream_ = std::make_unique<FileOutputStream>(file_);
  return true;
}

std::ostream& ExportTemporaryFile::stream() { return *stream_; }

bool ExportTemporaryFile::finishWriting() {
  if (stream_->flush() && std::fflush(file_) == 0 && !std::ferror(file_)) return true;
  setError("Can not write file %s", kExportTemporaryFile);
  return false;
}

bool ExportTemporaryFile::readBack(symlib::SymbolicFile& model, ConsoleLog& console) {
  console.print("building CompSymbMat...");
  std::string content;
  if (std::fseek(file_, 0, SEEK_SET) != 0 || !readRestOfFile(file_, content)) {
    setError("Can not open temporary file.");
    return false;
  }
  std::istringstream in(std::move(content));
  symlib::ParseSymbolicFile(in, "nom", model);
  console.print("[done]");
  return true;
}

bool writeModel(symlib::SymbolicFile& model, std::ostream& out, bool xml, const std::string& destination) {
  const bool written = xml ? symlib::WriteXmlSymbolicFile(model, out) : symlib::WriteSymbolicFileText(model, out);
  if (!written || !out.flush()) {
    setError("Can not write file %s", pathForDisplay(destination).c_str());
    return false;
  }
  return true;
}

}  // namespace velda
