#include "formats/library/GrammarSupport.h"

#include <charconv>

#include "formats/library/ParseContext.h"

namespace velda::symlib {

namespace {

template <typename Number>
bool readWhole(const std::string& text, Number& value) {
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

KeyInput TextInput(std::string text) { return KeyInput{KeyInput::Kind::Text, std::move(text)}; }

KeyInput IntegerInput(long long value) { return KeyInput{KeyInput::Kind::Integer, {}, value}; }

KeyInput RealInput(double value) { return KeyInput{KeyInput::Kind::Real, {}, 0, value}; }

KeyInput XmlTextInput(std::string text) { return KeyInput{KeyInput::Kind::XmlText, std::move(text)}; }

std::unique_ptr<SymVariable> Quantitative(SymVariableKind kind, const std::string& comment, const std::string& code,
                                          const std::string& label, double naCount, double nuCount, double min,
                                          double max) {
  auto v = std::make_unique<SymVariable>();
  v->kind = kind;
  v->comment = comment;
  v->code = code;
  v->label = label;
  v->naCount = naCount;
  v->nuCount = nuCount;
  v->min = min;
  v->max = max;
  return v;
}

std::unique_ptr<SymVariable> Categorical(SymVariableKind kind, SymWeighting weighting, const std::string& comment,
                                         const std::string& code, const std::string& label, double naCount,
                                         double nuCount, long long declaredCategories,
                                         std::vector<SymCategory> categories) {
  auto v = Quantitative(kind, comment, code, label, naCount, nuCount, 0, 0);
  v->weighting = weighting;
  v->declaredCategories = declaredCategories;
  v->categories = std::move(categories);
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

SymValue ListValue(SymValue::Kind kind, std::vector<SymItem> items) {
  SymValue v;
  v.kind = kind;
  v.items = std::move(items);
  return v;
}

long long XmlInteger(ParseContext& ctx, const std::string& text) {
  long long value = 0;
  if (readWhole(text, value)) return value;
  ctx.diagnostics.semanticError("the text '" + text + "' is not an integer");
  return 0;
}

double XmlReal(ParseContext& ctx, const std::string& text) {
  double value = 0;
  if (readWhole(text, value)) return value;
  ctx.diagnostics.semanticError("the text '" + text + "' is not a number");
  return 0;
}

SymWeighting XmlWeighting(ParseContext& ctx, const std::string& text) {
  if (text == "cardinal") return SymWeighting::Cardinal;
  if (text == "proba") return SymWeighting::Proba;
  ctx.diagnostics.semanticError("the weighting " + text + " is neither cardinal nor proba");
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

std::unique_ptr<SymVariable> XmlQuantitative(ParseContext& ctx, SymVariableKind kind,
                                             const XmlAttributes& attributes) {
  auto v = std::make_unique<SymVariable>();
  v->kind = kind;
  for (const auto& [name, value] : attributes) {
    if (name == "min") {
      v->min = XmlReal(ctx, value);
    } else if (name == "max") {
      v->max = XmlReal(ctx, value);
    } else if (name == "nbna") {
      v->naCount = XmlReal(ctx, value);
    } else if (name == "nbnu") {
      v->nuCount = XmlReal(ctx, value);
    } else {
      refuseAttribute(ctx, name, "continue-desc");
    }
  }
  return v;
}

std::unique_ptr<SymVariable> XmlCategorical(ParseContext& ctx, SymVariableKind kind, SymWeighting weighting,
                                            const XmlAttributes& attributes, std::vector<SymCategory> categories) {
  auto v = std::make_unique<SymVariable>();
  v->kind = kind;
  v->weighting = weighting;
  v->categories = std::move(categories);
  for (const auto& [name, value] : attributes) {
    if (name == "nbna") {
      v->naCount = XmlReal(ctx, value);
    } else if (name == "nbnu") {
      v->nuCount = XmlReal(ctx, value);
    } else if (name == "nbmoda") {
      v->declaredCategories = XmlInteger(ctx, value);
    } else {
      refuseAttribute(ctx, name, "nominal-desc");
    }
  }
  return v;
}

MetaData& Meta(ParseContext& ctx) { return ctx.metadata; }

}  // namespace velda::symlib
