#pragma once

#include <string>

#include "formats/library/Diagnostics.h"
#include "formats/library/MetaData.h"
#include "formats/library/ScanState.h"
#include "formats/library/SymbolicBuilder.h"

namespace velda::symlib {

// Everything one parse owns: the input, the scanner, the counters and the
// model being built. Nothing of a parse outlives it.
class ParseContext {
 public:
  // The content must outlive the context.
  ParseContext(const std::string& content, SymbolicFile& model, MetaData& metadata);
  ~ParseContext();
  ParseContext(const ParseContext&) = delete;
  ParseContext& operator=(const ParseContext&) = delete;

  // Runs the grammar over the whole input; false after a syntax error or
  // when a semantic action stopped the parse.
  bool parse();
  void reportSyntaxError(const std::string& message);
  // Switches to an XML form when its root element is met.
  void enterXml(DocumentMode mode);

  Diagnostics diagnostics;
  ScanState scan;
  SymbolicBuilder builder;
  MetaData& metadata;
  // The value just read, and the premise of the rule being read.
  SymValue value;
  SymValue premise;
  void* scanner = nullptr;
};

}  // namespace velda::symlib
