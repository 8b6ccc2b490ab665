#include "document/export/DocumentMetadata.h"

#include <sstream>

#include "common/AtomicFile.h"
#include "common/LastError.h"
#include "common/PathText.h"
#include "common/SafeFiles.h"
#include "formats/Codes.h"
#include "formats/library/MetaData.h"
#include "formats/library/SymbolicLibrary.h"
#include "model/SymbolicMatrix.h"

namespace velda {

namespace {

// The matrix's part of the metadata: the extraction's columns are the
// original variables of one original table; every variable is a
// metavariable (aggregated over its group when it came from the
// individuals, native when a query gave it at the level of the groups);
// every assertion is a metaindividual.
void describeMatrix(const SymbolicMatrix& matrix, symlib::MetaData& meta) {
  const size_t cells = std::min(matrix.cellCount(), matrix.variableCount());
  meta.origInfo.nbOrigVar = static_cast<long long>(cells);
  meta.origInfo.nbOrigMat = 1;
  meta.origInfo.origVars.clear();
  for (size_t v = 0; v < cells; ++v) {
    symlib::MetaOrigVar original = symlib::MakeMetaOrigVar();
    original.num = static_cast<long long>(v + 1);
    original.name = matrix.variable(v).name;
    original.source = 1;
    original.dataType = matrix.variable(v).isCategorical() ? "nominal" : "continue";
    meta.origInfo.origVars.push_back(std::move(original));
  }
  if (meta.origInfo.origTabs.empty()) {
    symlib::MetaOrigTab table = symlib::MakeMetaOrigTab();
    table.label = "Native Data";
    meta.origInfo.origTabs.push_back(table);
  }

  symlib::MetaMat& mat = meta.metaMat;
  mat.vars.clear();
  uint32_t written = 0;
  for (size_t v = 0; v < matrix.variableCount(); ++v) {
    const SymbolicVariable& variable = matrix.variable(v);
    if (!variable.active) continue;
    symlib::MetaVar metaVar = symlib::MakeMetaVar();
    metaVar.num = ++written;
    metaVar.name = itemCode(written, 0);
    metaVar.varOrig = v < cells ? static_cast<long long>(v + 1) : 0;
    metaVar.label = variable.name;
    metaVar.operatorName = v < cells ? "aggregated" : "native";
    mat.vars.push_back(std::move(metaVar));
  }
  mat.nbMetaVar = written;
  mat.inds.clear();
  for (size_t i = 0; i < matrix.orderedAssertions.size(); ++i) {
    const Assertion* assertion = matrix.orderedAssertions[i];
    if (!assertion) continue;
    symlib::MetaInd ind = symlib::MakeMetaInd();
    ind.num = static_cast<long long>(i + 1);
    ind.name = itemCode(0, static_cast<uint32_t>(i));
    ind.nbInObj = assertion->memberCount;
    ind.gNbInObj = assertion->memberCount;
    ind.operatorName = "aggregated";
    mat.inds.push_back(std::move(ind));
  }
  mat.nbMetaInd = static_cast<long long>(mat.inds.size());
}

}  // namespace

DocumentMetadata::DocumentMetadata() : data_(std::make_unique<symlib::MetaData>()) {}
DocumentMetadata::~DocumentMetadata() = default;

void DocumentMetadata::reset() { data_->reset(); }

void DocumentMetadata::setOrigin(const std::string& sqlQuery, const std::string& odbcSource) {
  data_->metaMat.sqlQuery = sqlQuery;
  data_->metaMat.odbcSource = odbcSource;
}

bool DocumentMetadata::load(std::FILE* file, const std::string& path) {
  std::string content;
  const bool read = readRestOfFile(file, content);
  std::fclose(file);
  if (!read) return false;
  std::istringstream in(std::move(content));
  auto fresh = std::make_unique<symlib::MetaData>();
  if (!symlib::TryParseMetadataFile(in, path, *fresh)) return false;
  data_ = std::move(fresh);
  return true;
}

bool DocumentMetadata::write(const std::string& path, const SymbolicMatrix& matrix) const {
  symlib::MetaData meta = *data_;
  describeMatrix(matrix, meta);
  AtomicFile file;
  if (!file.open(path) || !symlib::WriteMetadataFile(meta, file.stream()) || !file.commit()) {
    setError("Can not write file %s", pathForDisplay(path).c_str());
    return false;
  }
  return true;
}

}  // namespace velda
