#pragma once

#include <string_view>

#include "SymbolicGrammar.h"
#include "formats/library/TextSpan.h"

namespace velda::symlib {

class ParseContext;

// What the scanner's rules do with the token just matched (which they find
// in the input through the context).

// The text between the quotes, cut at 255 characters with the two
// messages, and echoed to standard output.
TextSpan QuotedString(ParseContext& ctx);
long long IntegerOf(const char* text, size_t length);
double RealOf(const char* text, size_t length);
int KeywordOrIdentifier(ParseContext& ctx, SymbolicGrammar::value_type* value);

// XML: a start tag begins (false for an element the form does not know),
// gets its attributes, and ends with ">" or "/>".
[[nodiscard]] bool StartTag(ParseContext& ctx, std::string_view name);
void Attribute(ParseContext& ctx, const char* text, size_t length);
int FinishStartTag(ParseContext& ctx, SymbolicGrammar::value_type* value, bool empty);
int EndTag(ParseContext& ctx, const char* text, size_t length);
// Text between tags, trimmed and decoded.
TextSpan XmlText(ParseContext& ctx);

// The generated scanner's fatal errors.
[[noreturn]] void ScannerFatal(const char* message);

}  // namespace velda::symlib
