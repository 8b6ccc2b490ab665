#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "formats/library/MetaData.h"
#include "formats/library/ScanState.h"
#include "formats/library/SymbolicBuilder.h"
#include "formats/library/SymbolicModel.h"

namespace velda::symlib {

class ParseContext;

// Small constructors and conversions used by the grammar's actions.

KeyInput TextInput(std::string_view text);
KeyInput IntegerInput(long long value);
KeyInput RealInput(double value);
KeyInput XmlTextInput(std::string text);

SymVariable Quantitative(SymVariableKind kind, std::string_view comment, std::string_view code, std::string_view label,
                         double naCount, double nuCount, double min, double max);
SymVariable Categorical(SymVariableKind kind, SymWeighting weighting, std::string_view comment, std::string_view code,
                        std::string_view label, double naCount, double nuCount, long long declaredCategories,
                        std::vector<SymCategory> categories);

SymValue CategoryValue(long long category);
SymValue RealValue(double value);
SymValue IntervalValue(double low, double high);
SymValue EmptyValue(SymValue::Kind kind);
// A list value holding the pending items, which are then cleared (their
// room is kept for the next list).
SymValue ListValue(SymValue::Kind kind, std::vector<SymItem>& pending);

// XML text read as a number; a text that is not one is an error and reads 0.
long long XmlInteger(ParseContext& ctx, std::string_view text);
double XmlReal(ParseContext& ctx, std::string_view text);
SymWeighting XmlWeighting(ParseContext& ctx, std::string_view text);

// The contents element: one attribute per block, "YES" when present.
void DeclareContents(SymbolicBuilder& builder, ParseContext& ctx, const XmlAttributes& attributes);
// Variables described by their continue-desc or nominal-desc attributes.
SymVariable XmlQuantitative(ParseContext& ctx, SymVariableKind kind, const XmlAttributes& attributes);
SymVariable XmlCategorical(ParseContext& ctx, SymVariableKind kind, SymWeighting weighting,
                           const XmlAttributes& attributes, std::vector<SymCategory> categories);

MetaData& Meta(ParseContext& ctx);

}  // namespace velda::symlib
