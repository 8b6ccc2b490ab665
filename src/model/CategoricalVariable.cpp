#include "model/CategoricalVariable.h"

#include <algorithm>
#include <new>

#include "model/CategoricalValue.h"
#include "model/DeclarationStyle.h"

namespace velda {

namespace {

// The file's word for how the variable's values are written.
const char* declarationKind(const CategoricalVariable& variable) {
  if (!variable.multiple) return "nominal";
  return variable.mode == MODE_BOOLEAN ? "mult_nominal" : "mult_nominal_Modif";
}

}  // namespace

CategoricalVariable::CategoricalVariable(std::string name, int32_t multiple, size_t modalityBuckets)
    : SymbolicVariable(std::move(name), multiple),
      mode(multiple ? MODE_PROBABILIST : MODE_BOOLEAN),
      modalities(modalityBuckets),
      nodes(kNodeTableBuckets) {}

bool CategoricalVariable::addCell(const char* text, CellValue& cell) {
  if (!text) {
    cell.flags = CELL_MODALITY | CELL_NULL;
    cell.modality = nullptr;
    return true;
  }
  Modality* modality = modalities.find(text);
  if (!modality) {
    try {
      modality = &addModality(text);
    } catch (const std::bad_alloc&) {
      return false;
    }
  }
  cell.flags = CELL_MODALITY;
  cell.modality = modality;
  return true;
}

const Modality* CategoricalVariable::byIndex(int32_t index) const {
  if (index < 0 || static_cast<size_t>(index) >= byIndex_.size()) return nullptr;
  return byIndex_[static_cast<size_t>(index)];
}

Modality* CategoricalVariable::byIndex(int32_t index) {
  return const_cast<Modality*>(static_cast<const CategoricalVariable*>(this)->byIndex(index));
}

Modality* CategoricalVariable::findNode(std::string_view name) {
  if (Modality* leaf = modalities.find(name)) return leaf;
  return nodes.find(name);
}

Modality& CategoricalVariable::addModality(std::string name, int32_t index) {
  return registerIndex(modalities, std::move(name), index);
}

Modality& CategoricalVariable::addNode(std::string name, int32_t index) {
  return registerIndex(nodes, std::move(name), index);
}

Modality& CategoricalVariable::registerIndex(ModalityTable& table, std::string name, int32_t index) {
  if (index < 0) index = static_cast<int32_t>(byIndex_.size());
  const size_t needed = std::max(byIndex_.size(), static_cast<size_t>(index) + 1);
  // Room is made before the insert, so that a failure leaves the variable
  // unchanged, and it grows geometrically: a variable may get a million
  // modalities one by one.
  if (needed > byIndex_.capacity()) byIndex_.reserve(std::max(needed, 2 * byIndex_.capacity()));
  Modality& modality = table.insert(std::move(name), index);
  byIndex_.resize(needed, nullptr);
  byIndex_[static_cast<size_t>(index)] = &modality;
  return modality;
}

void CategoricalVariable::clearTaxonomy() {
  taxonomyRoot = nullptr;
  nodes.clear();
  // A read project sizes the table to its nodes; a new taxonomy starts from
  // the usual buckets, so it lists its nodes as in a fresh session. Without
  // memory for them the table keeps its buckets, which only changes the order
  // (this also runs when a failed taxonomy is undone, where nothing may throw).
  try {
    nodes.rebuild(kNodeTableBuckets);
  } catch (const std::bad_alloc&) {
  }
  byIndex_.resize(modalities.size());
  for (Modality& leaf : modalities) {
    leaf.parent = nullptr;
    leaf.firstChild = nullptr;
    leaf.nextSibling = nullptr;
  }
}

void CategoricalVariable::detachTaxonomy(DetachedTaxonomy& into) {
  into.leafLinks.clear();
  into.leafLinks.reserve(modalities.size());
  for (const Modality& leaf : modalities) into.leafLinks.push_back({leaf.parent, leaf.firstChild, leaf.nextSibling});
  into.root = taxonomyRoot;
  into.indexCount = byIndex_.size();
  // `into` arrives with an empty table of the usual buckets: a new taxonomy
  // lists its nodes as in a fresh session.
  nodes.swap(into.nodes);
  taxonomyRoot = nullptr;
  byIndex_.resize(modalities.size());
  for (Modality& leaf : modalities) leaf.parent = leaf.firstChild = leaf.nextSibling = nullptr;
}

void CategoricalVariable::restoreTaxonomy(DetachedTaxonomy& detached) {
  nodes.clear();
  nodes.swap(detached.nodes);
  auto links = detached.leafLinks.begin();
  for (Modality& leaf : modalities) {
    leaf.parent = links->parent;
    leaf.firstChild = links->firstChild;
    leaf.nextSibling = links->nextSibling;
    ++links;
  }
  taxonomyRoot = detached.root;
  // The index array never gives back capacity, so growing it back to its
  // former size does not allocate.
  byIndex_.resize(modalities.size());
  byIndex_.resize(detached.indexCount, nullptr);
  for (Modality& node : nodes) byIndex_[static_cast<size_t>(node.index)] = &node;
}

void CategoricalVariable::indexNames() {
  modalities.trackTails(true);
  modalities.indexKeys(true);
  modalities.rememberInsertOrder();
  nodes.trackTails(true);
  nodes.indexKeys(true);
}

void CategoricalVariable::compact() {
  modalities.rebuild(modalities.size());
  modalities.trackTails(false);
  modalities.indexKeys(false);
}

void CategoricalVariable::writeDescription(std::ostream& out) const {
  std::vector<const Modality*> sorted;
  sorted.reserve(modalityCount() + nodeCount());
  for (const Modality& m : modalities) sorted.push_back(&m);
  for (const Modality& m : nodes) sorted.push_back(&m);
  std::sort(sorted.begin(), sorted.end(), [](const Modality* a, const Modality* b) { return a->name < b->name; });

  out << "variable " << name << '\n' << "  nominale {";
  for (size_t i = 0; i < sorted.size(); ++i) out << (i ? ", " : "") << '"' << sorted[i]->name << '"';
  out << "}\n";

  if (multiple) {
    static const char* const kModeTexts[] = {"boolean;", "cardinality;", "probabilist;", "KT-estimate probability;"};
    const int32_t shown = (mode >= MODE_BOOLEAN && mode <= MODE_KT_ESTIMATE) ? mode : MODE_PROBABILIST;
    out << "  multiple,mode=" << kModeTexts[shown] << '\n';
  } else {
    out << "  unique;\n";
  }

  if (!hasTaxonomy()) return;
  out << "  taxonomy {\n";
  bool first = true;
  for (const Modality* node : sorted) {
    if (!node->firstChild) continue;
    if (!first) out << ",\n";
    first = false;
    out << "    \"" << node->name << "\" = {";
    for (const Modality* child = node->firstChild; child; child = child->nextSibling)
      out << (child == node->firstChild ? "" : ", ") << '"' << child->name << '"';
    out << '}';
  }
  out << "\n  }\n";
}

std::vector<int32_t> CategoricalVariable::leafCounts() const {
  // Children come after their parent in a walk down from the tops, so the
  // walk taken backwards sums every child before its parent.
  std::vector<const Modality*> walk;
  walk.reserve(byIndex_.size());
  for (const Modality* node : byIndex_)
    if (node && !node->parent) walk.push_back(node);
  for (size_t next = 0; next < walk.size(); ++next)
    for (const Modality* child = walk[next]->firstChild; child; child = child->nextSibling) walk.push_back(child);
  std::vector<int32_t> counts(byIndex_.size(), 0);
  for (auto it = walk.rbegin(); it != walk.rend(); ++it) {
    const Modality* node = *it;
    if (!node->firstChild) counts[static_cast<size_t>(node->index)] = 1;
    if (node->parent) counts[static_cast<size_t>(node->parent->index)] += counts[static_cast<size_t>(node->index)];
  }
  return counts;
}

void CategoricalVariable::writeDeclaration(std::ostream& out, int32_t number, double naCount, double nuCount,
                                           const DeclarationStyle& style) const {
  const auto letters = static_cast<uint32_t>(number);
  out << "  (" << number << ", " << declarationKind(*this) << ", \"\", ";
  style.writeQuoted(out, style.code(letters, 0));
  out << ", ";
  style.writeQuoted(out, name);
  out << ", ";
  if (multiple && mode != MODE_BOOLEAN) out << (mode == MODE_CARDINALITY ? "cardinal, " : "proba, ");
  const auto m = static_cast<int32_t>(modalityCount());
  out << naCount << ", " << nuCount << ", " << m << ",\n     (";
  const std::vector<int32_t> leaves = leafCounts();
  for (int32_t k = 1; k <= m; ++k) {
    const Modality* category = byIndex(k - 1);
    if (k > 1) out << ", \n      ";
    out << '(' << k << ", ";
    style.writeQuoted(out, style.code(letters, static_cast<uint32_t>(k)));
    out << ", ";
    style.writeQuoted(out, category ? std::string_view(category->name) : std::string_view());
    out << ", " << (category ? leaves[static_cast<size_t>(k - 1)] : 1) << " )";
  }
  out << ")\n  )";
}

std::unique_ptr<SymbolicValue> CategoricalVariable::newSymbolicValue() const {
  return std::make_unique<CategoricalValue>(*this);
}

}  // namespace velda
