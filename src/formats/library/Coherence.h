#pragma once

#include "formats/library/Diagnostics.h"
#include "formats/library/SymbolicFile.h"

namespace velda::symlib {

// `verifcoher`: compares what the header declares with what the file
// describes and ends with the summary of the file.
void VerifyCoherence(const SymbolicFile& model, Diagnostics& diagnostics);

}  // namespace velda::symlib
