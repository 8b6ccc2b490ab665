#pragma once

#include <memory>
#include <string>
#include <vector>

#include "formats/library/MetaData.h"
#include "formats/library/ScanState.h"
#include "formats/library/SymbolicBuilder.h"
#include "formats/library/SymbolicModel.h"

namespace velda::symlib {

class ParseContext;

// Small constructors and conversions used by the grammar's actions. Large
// values travel on the parser's stack by pointer, which keeps it small.

KeyInput TextInput(std::string text);
KeyInput IntegerInput(long long value);
KeyInput RealInput(double value);
KeyInput XmlTextInput(std::string text);

std::unique_ptr<SymVariable> Quantitative(SymVariableKind kind, const std::string& comment, const std::string& code,
                         const std::string& label, double naCount, double nuCount, double min, double max);
std::unique_ptr<SymVariable> Categorical(SymVariableKind kind, SymWeighting weighting, const std::string& comment,
                        const std::string& code, const std::string& label, double naCount, double nuCount,
                        long long declaredCategories, std::vector<SymCategory> categories);

SymValue CategoryValue(long long category);
SymValue RealValue(double value);
SymValue IntervalValue(double low, double high);
SymValue ListValue(SymValue::Kind kind, std::vector<SymItem> items);

// XML text read as a number; a text that is not one is an error and reads 0.
long long XmlInteger(ParseContext& ctx, const std::string& text);
double XmlReal(ParseContext& ctx, const std::string& text);
SymWeighting XmlWeighting(ParseContext& ctx, const std::string& text);

// The contents element: one attribute per block, "YES" when present.
void DeclareContents(SymbolicBuilder& builder, ParseContext& ctx, const XmlAttributes& attributes);
// Variables described by their continue-desc or nominal-desc attributes.
std::unique_ptr<SymVariable> XmlQuantitative(ParseContext& ctx, SymVariableKind kind, const XmlAttributes& attributes);
std::unique_ptr<SymVariable> XmlCategorical(ParseContext& ctx, SymVariableKind kind, SymWeighting weighting,
                           const XmlAttributes& attributes, std::vector<SymCategory> categories);

MetaData& Meta(ParseContext& ctx);

}  // namespace velda::symlib
