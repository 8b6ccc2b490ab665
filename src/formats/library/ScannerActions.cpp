#include "formats/library/ScannerActions.h"

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <climits>
#include <cstdio>
#include <cstring>

#include "formats/library/Keywords.h"
#include "formats/library/LibraryLog.h"
#include "formats/library/ParseContext.h"
#include "formats/library/XmlEscape.h"

namespace velda::symlib {

namespace {

bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

void print(std::string_view text) { std::fwrite(text.data(), 1, text.size(), stdout); }

// The echo of every string read, in one write: it is the scanner's most
// frequent output.
void echo(std::string_view body) {
  constexpr std::string_view kOpening = "CHaine Korva: ";
  constexpr std::string_view kClosing = " \n";
  char line[kOpening.size() + ScanState::kMaxString + kClosing.size()];
  char* end = std::copy(kOpening.begin(), kOpening.end(), line);
  end = std::copy(body.begin(), body.end(), end);
  end = std::copy(kClosing.begin(), kClosing.end(), end);
  std::fwrite(line, 1, static_cast<size_t>(end - line), stdout);
}

// Sign and digits may be preceded by '+', which from_chars refuses.
const char* skipPlus(const char* text, const char* end) { return text != end && *text == '+' ? text + 1 : text; }

// Each old-style spelling is reported once per parse.
void warnOnce(ParseContext& ctx, const char* warning) {
  std::vector<const char*>& warned = ctx.scan.warnedOldStyle;
  if (std::find(warned.begin(), warned.end(), warning) != warned.end()) return;
  warned.push_back(warning);
  ctx.diagnostics.warning(warning);
}

}  // namespace

TextSpan QuotedString(ParseContext& ctx) {
  const std::string_view token = ctx.scan.token();
  std::string_view body = token.substr(1, token.size() - 2);
  if (body.size() > ScanState::kMaxString) {
    body = body.substr(0, ScanState::kMaxString);
    std::printf("the character string at line %d is too long", static_cast<int>(ctx.scan.tokenLine));
    print("it begin with ");
    print(body);
    print(" \n");
  }
  echo(body);
  return SpanOf(body);
}

long long IntegerOf(const char* text, size_t length) {
  const char* end = text + length;
  long long value = 0;
  auto [stop, ec] = std::from_chars(skipPlus(text, end), end, value);
  if (ec == std::errc::result_out_of_range) return *text == '-' ? LLONG_MIN : LLONG_MAX;
  return value;
}

double RealOf(const char* text, size_t length) {
  const char* end = text + length;
  double value = 0;
  auto [stop, ec] = std::from_chars(skipPlus(text, end), end, value);
  if (ec != std::errc::result_out_of_range) return value;
  // Beyond the range of doubles: the largest one for a large exponent,
  // zero for a tiny one.
  const char* exponent = std::strpbrk(text, "eE");
  if (exponent && exponent[1] == '-') return 0;
  return *text == '-' ? -DBL_MAX : DBL_MAX;
}

int KeywordOrIdentifier(ParseContext& ctx, SymbolicGrammar::value_type* value) {
  const std::string_view word = ctx.scan.token();
  value->text = SpanOf(word);
  const WordToken* keyword = FindKeyword(word);
  if (!keyword) return SymbolicGrammar::token::IDENT;
  if (keyword->warning) warnOnce(ctx, keyword->warning);
  return keyword->token;
}

bool StartTag(ParseContext& ctx, std::string_view name) {
  const ElementTokens* element = FindElement(ctx.scan.mode, name);
  if (!element) return false;
  ScanState& s = ctx.scan;
  s.openToken = element->open;
  s.closeToken = element->close;
  s.tagCarriesAttributes = element->carriesAttributes;
  s.tagStart = s.tokenStart;
  s.tagLine = s.tokenLine;
  s.tagLineStart = s.tokenLineStart;
  s.attributes.clear();
  return true;
}

void Attribute(ParseContext& ctx, const char* text, size_t length) {
  const std::string_view all(text, length);
  size_t nameEnd = 0;
  while (nameEnd < all.size() && !isSpace(all[nameEnd]) && all[nameEnd] != '=') ++nameEnd;
  const size_t open = all.find_first_of("\"'", nameEnd);
  const std::string_view quoted = all.substr(open + 1, all.size() - open - 2);
  ctx.scan.attributes.emplace_back(std::string(all.substr(0, nameEnd)), DecodeXmlText(quoted));
}

int FinishStartTag(ParseContext& ctx, SymbolicGrammar::value_type* value, bool empty) {
  ScanState& s = ctx.scan;
  // Errors about the element point at its start tag as a whole.
  s.tokenStart = s.tagStart;
  s.tokenLength = s.offset - s.tagStart;
  s.tokenLine = s.tagLine;
  s.tokenLineStart = s.tagLineStart;
  if (s.tagCarriesAttributes) {
    value->attributes = static_cast<int>(ctx.attributeLists.size());
    ctx.attributeLists.push_back(std::move(s.attributes));
  }
  s.attributes.clear();
  if (empty) s.pendingClose = s.closeToken;
  return s.openToken;
}

int EndTag(ParseContext& ctx, const char* text, size_t length) {
  size_t nameEnd = 2;
  while (nameEnd < length && !isSpace(text[nameEnd]) && text[nameEnd] != '>') ++nameEnd;
  const ElementTokens* element = FindElement(ctx.scan.mode, std::string_view(text + 2, nameEnd - 2));
  return element ? element->close : SymbolicGrammar::token::UNKNOWN_TAG;
}

TextSpan XmlText(ParseContext& ctx) {
  std::string_view text = ctx.scan.token();
  while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
  // Most texts hold no reference: they are read where they stand.
  if (text.find('&') == std::string_view::npos) return SpanOf(text);
  return ctx.keep(DecodeXmlText(text));
}

void ScannerFatal(const char* message) {
  std::fprintf(stderr, "%s\n", message);
  LibraryExit(2);
}

}  // namespace velda::symlib
