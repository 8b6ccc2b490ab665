#include "formats/library/SymbolicBuilder.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "formats/library/LibraryLog.h"

namespace velda::symlib {

namespace {

constexpr long long kMaxMultipleCategories = 200;

std::string str(long long n) { return std::to_string(n); }

// The block that must come before another one, or the block itself.
SymBlock prerequisiteOf(SymBlock block) {
  switch (block) {
    case SymBlock::Individuals:
    case SymBlock::DistMatrix:
    case SymBlock::MatchMatrix: return SymBlock::Header;
    case SymBlock::Hierarchie:
    case SymBlock::Rules:
    case SymBlock::RectangleMatrix: return SymBlock::Variables;
    default: return block;
  }
}

bool parseWhole(const std::string& text, long long& value) {
  auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  return ec == std::errc() && end == text.data() + text.size() && !text.empty();
}

bool parseWhole(const std::string& text, double& value) {
  auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  return ec == std::errc() && end == text.data() + text.size() && !text.empty();
}

// Whether a list may name a category twice. Short lists, the usual ones,
// are compared pair by pair; long ones are left to the full check.
bool mayRepeat(const std::vector<SymItem>& items) {
  constexpr size_t kPairwiseLimit = 16;
  if (items.size() > kPairwiseLimit) return true;
  for (size_t i = 1; i < items.size(); ++i) {
    for (size_t j = 0; j < i; ++j) {
      if (items[i].number == items[j].number) return true;
    }
  }
  return false;
}

// Turns XML text into the kind of the key it is given to; false when it
// does not read as one.
bool convertXmlText(KeyType type, KeyInput& value) {
  if (type == KeyType::Text) {
    value.kind = KeyInput::Kind::Text;
    return true;
  }
  if (type == KeyType::Integer && parseWhole(value.text, value.integer)) {
    value.kind = KeyInput::Kind::Integer;
    return true;
  }
  if (type == KeyType::Real && parseWhole(value.text, value.real)) {
    value.kind = KeyInput::Kind::Real;
    return true;
  }
  return false;
}

const char* refusalOf(KeyType type, KeyInput::Kind given) {
  if (given == KeyInput::Kind::Integer && type == KeyType::Text)
    return "impossible to affect an integer to the description";
  if (given == KeyInput::Kind::Real && type != KeyType::Real) return "impossible to affect a real to the description";
  if (given == KeyInput::Kind::Text && type != KeyType::Text) return "impossible to affect a string to the description";
  return nullptr;
}

}  // namespace

void SymbolicBuilder::beginBlock(SymBlock block) {
  const int b = static_cast<int>(block);
  const std::string name = SymBlockName(block);
  current_ = block;
  accepting_ = false;
  if (!model_.declared[b]) {
    diag_.semanticError(" Le nom" + name + " n'a pas ete trouve dans le Contenu\nARRET PROGRAMME");
    LibraryExit(1);
  }
  if (model_.present[b]) {
    diag_.semanticError("the block " + name + " is described twice");
    return;
  }
  const SymBlock needed = prerequisiteOf(block);
  if (needed != block && !model_.isPresent(needed)) {
    diag_.semanticError("the block " + name + " must follow the block " + SymBlockName(needed));
    return;
  }
  model_.present[b] = true;
  accepting_ = true;
}

void SymbolicBuilder::beginEmptyBlock(SymBlock block) {
  if (model_.declared[static_cast<int>(block)]) {
    beginBlock(block);
    return;
  }
  current_ = block;
  accepting_ = false;
}

void SymbolicBuilder::assignKey(std::string_view key, const KeyInput& given) {
  if (!accepting_) return;
  KeyValueBlock& block = current_ == SymBlock::Files ? model_.file : model_.header;
  const int index = block.find(key);
  if (index < 0) {
    const std::string blockName = block.name();
    const std::string name(key);
    if (model_.file.find(key) >= 0 || model_.header.find(key) >= 0) {
      diag_.semanticError(" ERROR the name '" + name + " does not fit with any possible parameter within the  block" +
                          blockName);
      return;
    }
    std::string message = "the Identifier" + name + " is not valid for describe an" + blockName + " file  :\n" +
                          "possible element of a" + blockName + " file";
    for (const KeyDescriptor& allowed : block.keys()) message += std::string("\n") + allowed.name;
    diag_.semanticError(message);
    return;
  }
  const KeyType type = block.keys()[index].type;
  KeyInput value = given;
  if (value.kind == KeyInput::Kind::XmlText && !convertXmlText(type, value)) value.kind = KeyInput::Kind::Text;
  if (value.kind == KeyInput::Kind::Integer && type == KeyType::Real) {
    value.kind = KeyInput::Kind::Real;
    value.real = static_cast<double>(value.integer);
  }
  if (const char* refusal = refusalOf(type, value.kind)) {
    diag_.semanticError(refusal);
    return;
  }
  KeyValue& slot = block.value(index);
  slot = KeyValue{};
  slot.set = true;
  switch (type) {
    case KeyType::Text: slot.text = value.text; break;
    case KeyType::Integer: slot.integer = value.integer; break;
    case KeyType::Real: slot.real = value.real; break;
  }
}

void SymbolicBuilder::addIndividual(long long number, std::string code, std::string label) {
  if (!accepting_) return;
  const long long declared = headerCount(kIndivNb);
  // One individual more than declared is still kept; the coherence check
  // reports the difference.
  if (static_cast<long long>(model_.individuals.size()) > declared) {
    diag_.semanticError("too much individuals described, max " + str(declared));
    return;
  }
  model_.individuals.push_back({number, std::move(code), std::move(label)});
}

void SymbolicBuilder::addVariable(SymVariable&& variable) {
  if (!accepting_) return;
  const long long described = static_cast<long long>(variable.categories.size());
  if (variable.isCategorical() && variable.declaredCategories != described) {
    diag_.semanticError(" the number of categories" + str(variable.declaredCategories) + " declared for the variable" +
                        variable.label + " is different of the number described" + str(described));
  }
  const bool multiple =
      variable.kind == SymVariableKind::MultNominal || variable.kind == SymVariableKind::MultNominalModif;
  if (multiple && described > kMaxMultipleCategories) {
    std::fprintf(stderr, " Impossible to create a nominal Multpile Variablewith %lld", described);
    std::fputs("different categories\n  Maximum possible 200 \n", stderr);
  }
  model_.variables.push_back(std::move(variable));
}

bool SymbolicBuilder::checkNoErrorBefore(const char* what) {
  if (diag_.errors() == 0) return true;
  diag_.semanticError(std::string(what) + " previous errors occurs Errors Before : PARSER STOP");
  return false;
}

bool SymbolicBuilder::addHierarchy(SymHierarchy&& hierarchy) {
  if (!accepting_) return true;
  if (!checkNoErrorBefore("Impossible to parse an Hierarchy description when")) return false;
  const long long variables = static_cast<long long>(model_.variables.size());
  if (hierarchy.variable < 1 || hierarchy.variable > variables ||
      !model_.variables[hierarchy.variable - 1].isCategorical()) {
    diag_.semanticError(" the hierarchy of the variable" + str(hierarchy.variable) +
                        " does not describe a nominal variable");
    return true;
  }
  const SymVariable& variable = model_.variables[hierarchy.variable - 1];
  const long long inner = static_cast<long long>(hierarchy.innerNodes.size());
  if (hierarchy.declaredInnerNodes != inner) {
    diag_.semanticError(" the number of hierarchy values" + str(hierarchy.declaredInnerNodes) +
                        " is different of the number described" + str(inner));
  }
  checkHierarchyLinks(variable, hierarchy);
  model_.hierarchies.push_back(std::move(hierarchy));
  return true;
}

void SymbolicBuilder::checkHierarchyLinks(const SymVariable& variable, SymHierarchy& hierarchy) {
  const long long total = static_cast<long long>(variable.categories.size() + hierarchy.innerNodes.size());
  std::vector<char> described(total + 1, 0);
  std::vector<char> hasParent(total + 1, 0);
  for (SymHierarchyLink& link : hierarchy.links) {
    if (link.node < 1 || link.node > total) {
      diag_.semanticError(" the hierarchy node" + str(link.node) + " does not exist, Max =" + str(total));
      continue;
    }
    if (described[link.node]) {
      diag_.semanticError("hierarchichal value related to the" + str(link.node) + " value alredy set");
      continue;
    }
    described[link.node] = 1;
    std::vector<long long> kept;
    for (long long child : link.children) {
      if (child < 1 || child > total) {
        diag_.semanticError("Impossible to parse an Hierarchy node with Number of SubNode" + str(child) +
                            " greater than" + str(total) + "\n     Subnode:" + str(child) + " Not taken into account");
        continue;
      }
      if (hasParent[child]) {
        diag_.semanticError("error in the hierarchie of the variable" + variable.label +
                            " has more than one father:" + str(child));
        continue;
      }
      hasParent[child] = 1;
      kept.push_back(child);
    }
    link.children = std::move(kept);
  }
}

bool SymbolicBuilder::addRule(SymRule&& rule) {
  if (!accepting_) return true;
  if (!checkNoErrorBefore("Impossible to parse a Rule description when")) return false;
  const long long declared = headerCount(kRulesNb);
  if (static_cast<long long>(model_.rules.size()) >= declared) {
    diag_.semanticError(" More relation than declared in the header max =" + str(declared));
    return true;
  }
  const long long variables = static_cast<long long>(model_.variables.size());
  for (long long v : {rule.premiseVariable, rule.conclusionVariable}) {
    if (v < 1 || v > variables) {
      diag_.semanticError(" the variable number" + str(v) + " of a rule does not exist, Max =" + str(variables));
      return true;
    }
  }
  model_.rules.push_back(std::move(rule));
  return true;
}

void SymbolicBuilder::refuseVariablesSet() {
  diag_.semanticError(" the block VARIABLES_SET is not supported by this library");
}

void SymbolicBuilder::refuseKind(std::string_view word) {
  diag_.semanticError(" the variable type " + std::string(word) + " is not supported by this library");
}

bool SymbolicBuilder::beginMatrix() {
  if (!accepting_) return true;
  if (diag_.errors() == 0) return true;
  diag_.semanticError("Impossible to parse the symbolic Matrix," + str(diag_.errors()) + " Errors before");
  return false;
}

void SymbolicBuilder::beginRow() {
  rowAccepted_ = false;
  rowTooWide_ = false;
  if (!accepting_) return;
  const long long rows = static_cast<long long>(model_.matrix.size()) + 1;
  const long long declared = headerCount(kIndivNb);
  if (rows > declared) {
    diag_.semanticError(" the number of line within the matrix is" + str(rows) +
                        " greater than the number of objects declared:" + str(declared));
    return;
  }
  model_.matrix.emplace_back();
  model_.matrix.back().reserve(model_.variables.size());
  rowAccepted_ = true;
}

void SymbolicBuilder::addCell(SymValue&& value) {
  if (!rowAccepted_) return;
  SymRow& row = model_.matrix.back();
  const long long column = static_cast<long long>(row.size()) + 1;
  const long long declared = headerCount(kVarNb);
  const long long described = static_cast<long long>(model_.variables.size());
  if (column > declared || column > described) {
    if (!rowTooWide_) {
      diag_.semanticError(" the number of column within the matrix is" + str(column) +
                          " greater than the number of objects declared:" + str(declared));
    }
    rowTooWide_ = true;
    return;
  }
  checkValueKind(model_.variables[column - 1], value);
  row.push_back(std::move(value));
}

void SymbolicBuilder::endRow() {
  if (!rowAccepted_ || rowTooWide_) return;
  const long long columns = static_cast<long long>(model_.matrix.back().size());
  const long long described = static_cast<long long>(model_.variables.size());
  if (columns < described) {
    diag_.semanticError(" the number of column within the matrix is" + str(columns) +
                        " smaller than the number of variables described:" + str(described));
  }
}

void SymbolicBuilder::checkValueKind(const SymVariable& variable, SymValue& value) {
  using Kind = SymValue::Kind;
  const std::string_view kind = SymVariableKindWord(variable.kind);
  switch (value.kind) {
    case Kind::NA:
    case Kind::NU: return;
    case Kind::Category:
      if (variable.kind == SymVariableKind::Continue) {
        value.kind = Kind::Real;
        value.low = static_cast<double>(value.category);
        value.category = 0;
        return;
      }
      if (variable.kind == SymVariableKind::Nominal) {
        checkCategory(variable, value);
        return;
      }
      break;
    case Kind::Real:
      if (variable.kind == SymVariableKind::Continue) return;
      break;
    case Kind::Interval:
      if (variable.kind == SymVariableKind::InterContinue) return;
      diag_.semanticError(std::string("Error a interval value for the variable which is type").append(kind));
      return;
    case Kind::CategorySet:
      if (variable.kind == SymVariableKind::MultNominal ||
          (variable.kind == SymVariableKind::MultNominalModif && value.items.empty())) {
        checkCategoryList(variable, value);
        return;
      }
      diag_.semanticError(
          std::string("Error a multiple simple value for the variable:\n\t which is of type:").append(kind));
      return;
    case Kind::WeightedSet:
      if (variable.kind == SymVariableKind::MultNominalModif) {
        checkCategoryList(variable, value);
        return;
      }
      diag_.semanticError(
          std::string("Error a multiple modal value for the variable:\n\t which is of type:").append(kind));
      return;
  }
  diag_.semanticError(std::string("Error a simple value for the variable which is type").append(kind));
}

void SymbolicBuilder::markOldFashionNA(SymValue& value) {
  diag_.warning("Warning : old fashion NA description by '0'");
  value = SymValue();
  value.kind = SymValue::Kind::NA;
}

void SymbolicBuilder::checkCategory(const SymVariable& variable, SymValue& value) {
  const long long count = static_cast<long long>(variable.categories.size());
  if (value.category == 0) {
    markOldFashionNA(value);
    return;
  }
  if (value.category < 0 || value.category > count) {
    diag_.semanticError(" to much categories for variable" + variable.label + " Max =" + str(count));
  }
}

void SymbolicBuilder::checkCategoryList(const SymVariable& variable, SymValue& value) {
  const long long count = static_cast<long long>(variable.categories.size());
  for (const SymItem& item : value.items) {
    if (item.number == 0) {
      markOldFashionNA(value);
      return;
    }
    if (item.number < 0 || item.number > count) {
      diag_.semanticError(" to much categories for variable" + variable.label + " Max =" + str(count));
      return;
    }
  }
  if (!mayRepeat(value.items)) return;
  // A category given twice keeps its first place and its last weight.
  std::vector<int> placeOf(count + 1, -1);
  std::vector<SymItem> kept;
  kept.reserve(value.items.size());
  for (const SymItem& item : value.items) {
    int& place = placeOf[item.number];
    if (place >= 0) {
      kept[place].weight = item.weight;
      continue;
    }
    place = static_cast<int>(kept.size());
    kept.push_back(item);
  }
  value.items = std::move(kept);
}

void SymbolicBuilder::beginTriangle(SymBlock block) {
  triangle_ = nullptr;
  if (!accepting_) return;
  triangle_ = block == SymBlock::DistMatrix ? &model_.distances : &model_.matches;
}

void SymbolicBuilder::addTriangleRow(std::vector<double>&& row) {
  if (!triangle_) return;
  const size_t expected = triangle_->size() + 1;
  if (row.size() != expected) {
    diag_.semanticError(" the line" + str(static_cast<long long>(expected)) + " of the " + SymBlockName(current_) +
                        " must hold" + str(static_cast<long long>(expected)) + " values and not" +
                        str(static_cast<long long>(row.size())));
  }
  triangle_->push_back(std::move(row));
}

void SymbolicBuilder::endTriangle() {
  if (!triangle_) return;
  const long long lines = static_cast<long long>(triangle_->size());
  const long long declared = headerCount(kIndivNb);
  if (lines != declared) {
    diag_.semanticError(std::string("the ") + SymBlockName(current_) + " has " + str(lines) +
                        " lines with a standard matrix of" + str(declared) + "individuals");
  }
  triangle_ = nullptr;
}

}  // namespace velda::symlib
