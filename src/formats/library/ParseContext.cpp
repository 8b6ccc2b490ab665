#include "formats/library/ParseContext.h"

#include "SymbolicGrammar.h"
#include "SymbolicScanner.h"

namespace velda::symlib {

ParseContext::ParseContext(const std::string& content, SymbolicFile& model, MetaData& metadata)
    : scan(content.data(), content.size()), builder(model, diagnostics), metadata(metadata) {
  symliblex_init_extra(this, &scanner);
}

ParseContext::~ParseContext() { symliblex_destroy(scanner); }

bool ParseContext::parse() {
  scan.checkLineLength();
  SymbolicGrammar grammar(*this);
  return grammar.parse() == 0;
}

void ParseContext::reportSyntaxError(const std::string& message) {
  // The generated parser's own wording of its two failures.
  std::string text = message;
  if (message == "syntax error") text = "parse error";
  if (message == "memory exhausted") text = "parser stack overflow";
  diagnostics.syntaxError(scan.errorLayout(text));
}

void ParseContext::enterXml(DocumentMode mode) {
  scan.mode = mode;
  diagnostics.note(mode == DocumentMode::UlmeXml ? "XML Ulmefile" : "XML MetaUlme");
}

TextSpan ParseContext::keep(std::string text) {
  // A deque never moves its elements, so the kept text stays in place.
  return SpanOf(decodedTexts.emplace_back(std::move(text)));
}

}  // namespace velda::symlib
