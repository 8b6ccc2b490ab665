#pragma once

#include <string_view>

#include "formats/library/ScanState.h"

namespace velda::symlib {

// A keyword of the text form and its token. Its spelling always goes with
// it to the grammar, which uses it for the keys of the FILE and HEADER
// blocks and for the refused kinds.
struct WordToken {
  int token;
  // Old-style spelling that the scanner warns about, or null.
  const char* warning;
};

// The keyword spelled exactly so, or null for an identifier.
const WordToken* FindKeyword(std::string_view word);

struct ElementTokens {
  int open;
  int close;
  bool carriesAttributes;
};

// The tokens of an element of the XML form being read, or null.
const ElementTokens* FindElement(DocumentMode mode, std::string_view name);

}  // namespace velda::symlib
