#pragma once

#include <deque>
#include <string>
#include <vector>

#include "formats/library/Diagnostics.h"
#include "formats/library/MetaData.h"
#include "formats/library/ScanState.h"
#include "formats/library/SymbolicBuilder.h"
#include "formats/library/TextSpan.h"

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
  [[nodiscard]] bool parse();
  void reportSyntaxError(const std::string& message);
  // Switches to an XML form when its root element is met.
  void enterXml(DocumentMode mode);
  // Keeps a decoded text for the rest of the parse.
  TextSpan keep(std::string text);

  Diagnostics diagnostics;
  ScanState scan;
  SymbolicBuilder builder;
  MetaData& metadata;
  // The value just read, and the premise of the rule being read.
  SymValue value;
  SymValue premise;
  // Lists and records being read. The parser's stack only holds numbers and
  // texts; the rule that completes a list takes it from here and leaves the
  // list empty for the next one.
  std::vector<SymItem> items;
  std::vector<SymCategory> categories;
  std::vector<SymHierarchyLink> links;
  std::vector<long long> numbers;
  std::vector<double> reals;
  SymVariable variable;
  MetaMeasure measure;
  // Attributes of the XML start tags that carry them, by the number the
  // scanner gives the grammar.
  std::vector<XmlAttributes> attributeLists;
  // Texts whose references were decoded (the others stay in the input).
  std::deque<std::string> decodedTexts;
  void* scanner = nullptr;
};

}  // namespace velda::symlib
