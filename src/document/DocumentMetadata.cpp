#include "document/DocumentMetadata.h"

#include "common/LastError.h"

namespace velda {

struct DocumentMetadata::Objects {};

DocumentMetadata::DocumentMetadata() : objects_(std::make_unique<Objects>()) {}
DocumentMetadata::~DocumentMetadata() = default;

void DocumentMetadata::reset() { objects_ = std::make_unique<Objects>(); }

bool DocumentMetadata::load(const std::string&) { return false; }

bool DocumentMetadata::write(const std::string&, const SymbolicMatrix&) const {
  setError("Metadata files are not available in this build");
  return false;
}

}  // namespace velda
