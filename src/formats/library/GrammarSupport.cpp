#include "formats/library/GrammarSupport.h"

#include <charconv>

#include "formats/library/ParseContext.h"

namespace velda::symlib {

namespace {

template <typename Number>
[[nodiscard]] bool readWhole(std::string_view text, Number& value) {
  const char* begin = text.data();
  const char* end = begin + text.size();
  if (begin != end && *begin == '+') ++begin;
  auto [stop, ec] = std::from_chars(begin, end, value);
  return ec == std::errc() && stop == end && begin != end;
}

void refuseAttribute(ParseContext& ctx, const std::string& name, const char* element) {
  ctx.diagnostics.semanticError("the attribute " + name + " is not valid for the element " + element);
}

}  // namespace

KeyInput TextInput(std::string_view text) { return KeyInput{KeyInput::Kind::Text, std::string(text)}; }

KeyInput IntegerInput(long long value) { return KeyInput{KeyInput::Kind::Integer, {}, value}; }

KeyInput RealInput(double value) { return KeyInput{KeyInput::Kind::Real, {}, 0, value}; }

KeyInput XmlTextInput(std::string text) { return KeyInput{KeyInput::Kind::XmlText, std::move(text)}; }

SymVariable Quantitative(SymVariableKind kind, std::string_view comment, std::string_view code, std::string_view label,
                         double naCount, double nuCount, double min, double max) {
  SymVariable v;
  v.kind = kind;
  v.comment = comment;
  v.code = code;
  v.label = label;
  v.naCount = naCount;
  v.nuCount = nuCount;
  v.min = min;
  v.max = max;
  return v;
}

SymVariable Categorical(SymVariableKind kind, SymWeighting weighting, std::string_view comment, std::string_view code,
                        std::string_view label, double naCount, double nuCount, long long declaredCategories,
                        std::vector<SymCategory> categories) {
  SymVariable v = Quantitative(kind, comment, code, label, naCount, nuCount, 0, 0);
  v.weighting = weighting;
  v.declaredCategories = declaredCategories;
  v.categories = std::move(categories);
  return v;
}

SymValue CategoryValue(long long category) {
  SymValue v;
  v.kind = SymValue::Kind::Category;
  v.category = category;
  return v;
}

SymValue RealValue(double value) {
  SymValue v;
  v.kind = SymValue::Kind::Real;
  v.low = value;
  return v;
}

SymValue IntervalValue(double low, double high) {
  SymValue v;
  v.kind = SymValue::Kind::Interval;
  v.low = low;
  v.high = high;
  return v;
}

SymValue EmptyValue(SymValue::Kind kind) {
  SymValue v;
  v.kind = kind;
  return v;
}

SymValue ListValue(SymValue::Kind kind, std::vector<SymItem>& pending) {
  SymValue v;
  v.kind = kind;
  v.items.assign(pending.begin(), pending.end());
  pending.clear();
  return v;
}

long long XmlInteger(ParseContext& ctx, std::string_view text) {
  long long value = 0;
  if (readWhole(text, value)) return value;
  ctx.diagnostics.semanticError("the text '" + std::string(text) + "' is not an integer");
  return 0;
}

double XmlReal(ParseContext& ctx, std::string_view text) {
  double value = 0;
  if (readWhole(text, value)) return value;
  ctx.diagnostics.semanticError("the text '" + std::string(text) + "' is not a number");
  return 0;
}

SymWeighting XmlWeighting(ParseContext& ctx, std::string_view text) {
  if (text == "cardinal") return SymWeighting::Cardinal;
  if (text == "proba") return SymWeighting::Proba;
  ctx.diagnostics.semanticError("the weighting " + std::string(text) + " is neither cardinal nor proba");
  return SymWeighting::Proba;
}

void DeclareContents(SymbolicBuilder& builder, ParseContext& ctx, const XmlAttributes& attributes) {
  for (const auto& [name, value] : attributes) {
    int block = 0;
    while (block < kSymBlockCount && name != SymBlockName(static_cast<SymBlock>(block))) ++block;
    if (block == kSymBlockCount) {
      refuseAttribute(ctx, name, "contains");
      continue;
    }
    if (value == "YES") builder.declare(static_cast<SymBlock>(block));
  }
}

SymVariable XmlQuantitative(ParseContext& ctx, SymVariableKind kind, const XmlAttributes& attributes) {
  SymVariable v;
  v.kind = kind;
  for (const auto& [name, value] : attributes) {
    if (name == "min") {
      v.min = XmlReal(ctx, value);
    } else if (name == "max") {
      v.max = XmlReal(ctx, value);
    } else if (name == "nbna") {
      v.naCount = XmlReal(ctx, value);
    } else if (name == "nbnu") {
      v.nuCount = XmlReal(ctx, value);
    } else {
      refuseAttribute(ctx, name, "continue-desc");
    }
  }
  return v;
}

SymVariable XmlCategorical(ParseContext& ctx, SymVariableKind kind, SymWeighting weighting,
                           const XmlAttributes& attributes, std::vector<SymCategory> categories) {
  SymVariable v;
  v.kind = kind;
  v.weighting = weighting;
  v.categories = std::move(categories);
  for (const auto& [name, value] : attributes) {
    if (name == "nbna") {
      v.naCount = XmlReal(ctx, value);
    } else if (name == "nbnu") {
      v.nuCount = XmlReal(ctx, value);
    } else if (name == "nbmoda") {
      v.declaredCategories = XmlInteger(ctx, value);
    } else {
      refuseAttribute(ctx, name, "nominal-desc");
    }
  }
  return v;
}

MetaData& Meta(ParseContext& ctx) { return ctx.metadata; }

}  // namespace velda::symlib
