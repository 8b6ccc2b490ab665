#include "document/project/ProjectReader.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

#include "common/LastError.h"
#include "model/CategoricalValue.h"
#include "model/CategoricalVariable.h"
#include "model/QuantitativeValue.h"
#include "model/QuantitativeVariable.h"
#include "model/SymbolicMatrix.h"

namespace velda {

namespace {

using namespace project;

// Parent, first child and next sibling of one modality, by number.
using Links = std::array<uint16_t, 3>;
enum Link : size_t { kParent, kFirstChild, kNextSibling };

// Walks a graph where every node has at most one successor and tells
// whether every walk ends at a node for which `ends` holds (no loop, no
// other end). Linear: each node is settled once.
template <typename Next, typename Ends>
bool everyWalkEnds(size_t count, Next next, Ends ends) {
  enum : char { kUnknown, kOnPath, kSettled };
  std::vector<char> state(count, kUnknown);
  std::vector<size_t> path;
  for (size_t start = 0; start < count; ++start) {
    size_t node = start;
    path.clear();
    while (state[node] == kUnknown && !ends(node)) {
      state[node] = kOnPath;
      path.push_back(node);
      const size_t following = next(node);
      if (following >= count) return false;
      node = following;
    }
    if (state[node] == kOnPath) return false;
    state[node] = kSettled;
    for (size_t visited : path) state[visited] = kSettled;
  }
  return true;
}

// Links the modalities of a variable as the numbers say, after checking
// that they make one tree under the root: every child is listed once in its
// own parent's list, and every node but the root climbs to the root.
[[nodiscard]] bool linkTaxonomy(CategoricalVariable& variable, const std::vector<Links>& links, uint16_t root) {
  const size_t total = links.size();
  if (root >= total) return false;
  auto node = [&](uint16_t number) { return number == kNone ? nullptr : variable.byIndex(number); };
  for (size_t i = 0; i < total; ++i) {
    for (uint16_t number : links[i])
      if (number != kNone && number >= total) return false;
    Modality* modality = variable.byIndex(static_cast<int32_t>(i));
    modality->parent = node(links[i][kParent]);
    modality->firstChild = node(links[i][kFirstChild]);
    modality->nextSibling = node(links[i][kNextSibling]);
  }
  std::vector<char> listed(total, 0);
  size_t listedCount = 0;
  for (size_t i = 0; i < total; ++i) {
    const Modality* parent = variable.byIndex(static_cast<int32_t>(i));
    for (const Modality* child = parent->firstChild; child; child = child->nextSibling) {
      const auto c = static_cast<size_t>(child->index);
      if (child->parent != parent || listed[c]) return false;
      listed[c] = 1;
      ++listedCount;
    }
  }
  if (listedCount != total - 1) return false;
  const bool climbs = everyWalkEnds(
      total, [&](size_t i) { return links[i][kParent] == kNone ? total : size_t{links[i][kParent]}; },
      [&](size_t i) { return i == root; });
  if (!climbs || links[root][kParent] != kNone) return false;
  variable.taxonomyRoot = variable.byIndex(root);
  return true;
}

CategoricalVariable* asCategorical(SymbolicVariable& variable) {
  return variable.isCategorical() ? static_cast<CategoricalVariable*>(&variable) : nullptr;
}

}  // namespace

std::unique_ptr<SymbolicMatrix> ProjectReader::read() {
  if (!readMagic()) {
    setError("Incorrect file type");
    return nullptr;
  }
  return readRest();
}

std::unique_ptr<SymbolicMatrix> ProjectReader::readBody(uint32_t individualCount, uint32_t assertionCount) {
  individualCount_ = individualCount;
  assertionCount_ = assertionCount;
  return readRest();
}

std::unique_ptr<SymbolicMatrix> ProjectReader::readRest() {
  try {
    bool ok = readHeader() && readTexts();
    for (size_t v = 0; ok && v < header_[kVariables]; ++v) ok = readVariable();
    ok = ok && matrix_->declareCellVariables(header_[kCellVariables], header_[kMotherCandidates]);
    for (size_t r = 0; ok && r < header_[kRules]; ++r) ok = readRule();
    ok = ok && mothersFormTrees();
    for (size_t a = 0; ok && a < assertionCount_; ++a) ok = readAssertion();
    for (size_t i = 0; ok && i < individualCount_; ++i) ok = readIndividual(i);
    if (ok && matrix_->indexAssertions()) return std::move(matrix_);
  } catch (const std::bad_alloc&) {
  }
  matrix_.reset();
  setError("Load failed");
  return nullptr;
}

bool ProjectReader::readMagic() {
  std::string magic;
  return in_.string(magic) && magic == kMagic && in_.u32(individualCount_) && in_.u32(assertionCount_);
}

bool ProjectReader::readHeader() {
  if (!in_.holds(individualCount_, kMinIndividualRecord) || !in_.holds(assertionCount_, kMinAssertionRecord))
    return false;
  matrix_ = SymbolicMatrix::create(std::max<size_t>(individualCount_, 1), std::max<size_t>(assertionCount_, 1));
  for (uint16_t& counter : header_)
    if (!in_.u16(counter)) return false;
  if (header_[kQuantitativeVariables] + header_[kCategoricalVariables] != header_[kVariables] ||
      header_[kCellVariables] > header_[kVariables] || header_[kTaxonomies] > header_[kCategoricalVariables])
    return false;
  if (!in_.holds(header_[kVariables], kMinVariableRecord)) return false;
  matrix_->reductionThreshold = header_[kReductionThreshold];
  matrix_->divisionClassCount = header_[kDivisionClasses];
  slots_.assign(assertionCount_, nullptr);
  lastMembership_.assign(assertionCount_, 0);
  return true;
}

bool ProjectReader::readTexts() {
  std::span<const unsigned char> block;
  if (!in_.string(matrix_->individualColumn) || !in_.string(matrix_->assertionColumn) ||
      !in_.string(matrix_->weightColumn) || !in_.bytes(kTextBlockSize, block))
    return false;
  // Each text ends at its first zero, and at the latest on its last byte.
  auto text = [](std::span<const unsigned char> field) {
    const auto* begin = reinterpret_cast<const char*>(field.data());
    return std::string(begin, strnlen(begin, field.size() - 1));
  };
  matrix_->title = text(block.first(kTitleSize));
  matrix_->subtitle = text(block.subspan(kTitleSize));
  return true;
}

bool ProjectReader::readVariable() {
  uint16_t kind, code, state;
  std::string name;
  if (!in_.u16(kind) || !in_.u16(code) || !in_.u16(state) || !in_.string(name)) return false;
  if (kind == kQuantitative) {
    auto variable = std::make_unique<QuantitativeVariable>(std::move(name), code);
    if (!in_.f64(variable->min) || !in_.f64(variable->max)) return false;
    variable->active = state ? 1 : 0;
    matrix_->appendVariable(std::move(variable));
    return true;
  }
  uint16_t leaves;
  if (!in_.u16(leaves) || !in_.holds(leaves, kMinModalityEntry)) return false;
  auto variable = std::make_unique<CategoricalVariable>(std::move(name), code, std::max<size_t>(leaves, 1));
  variable->active = state ? 1 : 0;
  if (!readModalities(*variable, leaves)) return false;
  matrix_->appendVariable(std::move(variable));
  return true;
}

// The leaves, numbered 0..m-1, then the taxonomy nodes, m..m+n-1: each
// number once, each leaf name once, links resolved once both tables are
// read. A node may repeat a name: the root that completes a taxonomy is
// "root_" even when the query named a modality or a node so.
bool ProjectReader::readModalities(CategoricalVariable& variable, uint16_t leaves) {
  uint16_t nodes, mode, root;
  if (!in_.u16(nodes) || !in_.u16(mode) || !in_.u16(root)) return false;
  const size_t total = size_t{leaves} + nodes;
  const bool linked = root != kNone;
  // Only a set-valued variable shows weights: a single-valued one is always
  // boolean, and another mode would write several items as one value.
  const bool modeFits = variable.multiple ? mode <= MODE_KT_ESTIMATE : mode == MODE_BOOLEAN;
  if (!modeFits || total > kNone || !in_.holds(total, kMinModalityEntry) || (!linked && nodes)) return false;
  variable.mode = mode;
  variable.nodes.rebuild(std::max<size_t>(nodes, 1));
  std::vector<Links> links(linked ? total : 0);
  for (size_t i = 0; i < total; ++i) {
    std::string name;
    uint16_t number;
    if (!in_.string(name) || !in_.u16(number)) return false;
    const bool leaf = i < leaves;
    if (leaf ? number >= leaves : (number < leaves || number >= total)) return false;
    if (variable.byIndex(number) || (leaf && variable.modalities.find(name))) return false;
    if (leaf)
      variable.addModality(std::move(name), number);
    else
      variable.addNode(std::move(name), number);
    if (!linked) continue;
    for (uint16_t& link : links[number])
      if (!in_.u16(link)) return false;
  }
  return !linked || linkTaxonomy(variable, links, root);
}

// One rule between two variables: the mother categorical, the daughter
// governed by no other rule, the set made of the mother's leaf modalities,
// each once. Both are cell-holding variables when the rule was made, but a
// join moves the second project's past the first's added variables.
bool ProjectReader::readRule() {
  uint16_t mother, daughter;
  if (!in_.u16(mother) || !in_.u16(daughter)) return false;
  const size_t variables = matrix_->variableCount();
  if (mother >= variables || daughter >= variables || mother == daughter) return false;
  auto* source = asCategorical(matrix_->variable(mother));
  SymbolicVariable& target = matrix_->variable(daughter);
  if (!source || target.rule) return false;
  std::vector<char> seen(source->modalityCount(), 0);
  std::vector<int32_t> applicable;
  for (;;) {
    uint16_t number;
    if (!in_.u16(number)) return false;
    if (number == kNone) break;
    if (number >= seen.size() || seen[number]) return false;
    seen[number] = 1;
    applicable.push_back(number);
  }
  auto rule = std::make_unique<DependenceRule>(mother, daughter, std::max<size_t>(applicable.size(), 1));
  for (int32_t index : applicable) rule->applicable.insert(index);
  target.motherIndex = mother;
  target.rule = rule.get();
  target.nextDaughter = source->firstDaughter;
  source->firstDaughter = daughter;
  matrix_->markDaughter(daughter);
  matrix_->rules.push_back(std::move(rule));
  return true;
}

bool ProjectReader::mothersFormTrees() const {
  const auto& variables = matrix_->variables();
  return everyWalkEnds(
      variables.size(), [&](size_t v) { return static_cast<size_t>(variables[v]->motherIndex); },
      [&](size_t v) { return variables[v]->motherIndex < 0; });
}

bool ProjectReader::readAssertion() {
  std::string name;
  uint32_t number, members;
  if (!in_.string(name) || !in_.u32(number) || !in_.u32(members)) return false;
  if (number >= assertionCount_ || slots_[number] || members > std::numeric_limits<int32_t>::max() ||
      matrix_->findAssertion(name))
    return false;
  if (!in_.holds(matrix_->variableCount(), kMinDescription)) return false;
  Assertion& assertion = matrix_->createAssertion(std::move(name));
  assertion.number = static_cast<int32_t>(number);
  assertion.memberCount = static_cast<int32_t>(members);
  slots_[number] = &assertion;
  for (size_t v = 0; v < matrix_->variableCount(); ++v)
    if (!readDescription(v, assertion.value(v))) return false;
  return true;
}

// An interval: five doubles. A categorical value: its entry count, three
// doubles, then per entry a modality number and two doubles.
bool ProjectReader::readDescription(size_t v, SymbolicValue& value) {
  auto weights = [&] { return in_.f64(value.naWeight) && in_.f64(value.nullWeight) && in_.f64(value.totalWeight); };
  const auto* variable = asCategorical(matrix_->variable(v));
  if (!variable) {
    auto& interval = static_cast<QuantitativeValue&>(value);
    return weights() && in_.f64(interval.min) && in_.f64(interval.max);
  }
  constexpr size_t kEntrySize = 18;
  uint16_t count;
  if (!in_.u16(count) || !weights() || (!variable->multiple && count > 1) || !in_.holds(count, kEntrySize))
    return false;
  auto& categorical = static_cast<CategoricalValue&>(value);
  categorical.entries.rebuild(std::max<size_t>(count, 1));
  for (size_t i = 0; i < count; ++i) {
    uint16_t number;
    double weight, subtreeWeight;
    if (!in_.u16(number) || !in_.f64(weight) || !in_.f64(subtreeWeight)) return false;
    if (number >= variable->modalityCount() || categorical.entries.find(number)) return false;
    categorical.entries.insert(number, weight, subtreeWeight);
  }
  return true;
}

bool ProjectReader::readIndividual(size_t ordinal) {
  std::string name;
  double weight;
  if (!in_.string(name) || !in_.f64(weight) || matrix_->findIndividual(name)) return false;
  // A stamp per assertion refuses a second membership of the same one.
  const auto stamp = static_cast<uint32_t>(ordinal + 1);
  std::vector<Assertion*> memberships;
  for (;;) {
    uint32_t number;
    if (!in_.u32(number)) return false;
    if (number == kEndOfMemberships) break;
    if (number >= assertionCount_ || lastMembership_[number] == stamp) return false;
    lastMembership_[number] = stamp;
    memberships.push_back(slots_[number]);
  }
  if (memberships.empty() || !in_.holds(matrix_->cellCount(), kMinCellRecord)) return false;
  Individual individual(std::move(name), matrix_->cellCount(), weight);
  for (size_t v = 0; v < matrix_->cellCount(); ++v)
    if (!readCell(v, individual.cells[v])) return false;
  Individual& stored = matrix_->insertIndividual(std::move(individual));
  // Linking puts each assertion in the direct slot and pushes the previous
  // one in front of the list: the first written is linked last.
  for (auto it = memberships.rbegin(); it != memberships.rend(); ++it) matrix_->link(stored, **it);
  return true;
}

bool ProjectReader::readCell(size_t v, CellValue& cell) {
  constexpr uint8_t kFlags = CELL_MODALITY | CELL_NUMBER | CELL_NULL | CELL_NA;
  constexpr uint8_t kKinds = CELL_MODALITY | CELL_NUMBER;
  uint8_t flags;
  if (!in_.u8(flags) || (flags & ~kFlags)) return false;
  cell.flags = flags;
  if (cell.isMissing() || flags == 0) return true;  // flags 0: a cleared cell, with no payload
  const auto* variable = asCategorical(matrix_->variable(v));
  if (!variable) {
    double number = 0.0;  // read aside: the cell's payload is packed
    if ((flags & kKinds) != CELL_NUMBER || !in_.f64(number)) return false;
    cell.number = number;
    return true;
  }
  uint16_t number;
  if ((flags & kKinds) != CELL_MODALITY || !in_.u16(number) || number >= variable->modalityCount()) return false;
  cell.modality = variable->byIndex(number);
  return true;
}

}  // namespace velda
