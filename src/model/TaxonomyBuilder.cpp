#include "model/TaxonomyBuilder.h"

#include <new>
#include <vector>

#include "common/LastError.h"
#include "model/CategoricalVariable.h"

namespace velda {

TaxonomyBuilder::TaxonomyBuilder(CategoricalVariable& variable) : variable_(variable) {
  try {
    auto previous = std::make_unique<DetachedTaxonomy>();
    variable_.detachTaxonomy(*previous);
    previous_ = std::move(previous);
  } catch (const std::bad_alloc&) {
    setError("Memory allocation failed");
    failed_ = true;
    return;
  }
  // A query may name any number of nodes; without memory for the index the
  // lookups only walk the chains.
  try {
    variable_.indexNames();
  } catch (const std::bad_alloc&) {
  }
}

TaxonomyBuilder::~TaxonomyBuilder() {
  if (!finished_) restorePrevious();
}

void TaxonomyBuilder::restorePrevious() {
  if (!previous_) return;
  variable_.restoreTaxonomy(*previous_);
  previous_.reset();
}

bool TaxonomyBuilder::fail() {
  failed_ = true;
  restorePrevious();
  return false;
}

bool TaxonomyBuilder::isLeaf(const Modality& node) const { return variable_.modalities.find(node.name) == &node; }

Modality* TaxonomyBuilder::nodeNamed(std::string_view name) {
  if (Modality* known = variable_.findNode(name)) return known;
  try {
    return &variable_.addNode(std::string(name));
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

bool TaxonomyBuilder::addRow(TaxonomyRow row) {
  if (failed_ || finished_) return false;
  ++line_;
  for (size_t column = 0; column < row.size(); ++column) {
    if (row[column]) continue;
    setError("Error at line %d: column %d is null", line_, static_cast<int>(column));
    return fail();
  }
  for (size_t column = 1; column < row.size(); ++column) {
    Modality* child = nodeNamed(*row[column - 1]);
    Modality* parent = child ? nodeNamed(*row[column]) : nullptr;
    if (!parent) {
      setError("Memory allocation failed");
      return fail();
    }
    if (!link(*child, *parent)) return fail();
  }
  return true;
}

bool TaxonomyBuilder::link(Modality& child, Modality& parent) {
  if (&child == &parent) {
    setError("Error at line %d: definition of parent of '%s' is itself", line_, child.name.c_str());
    return false;
  }
  if (child.parent) {
    if (child.parent == &parent) return true;
    setError("Error at line %d: definition of parent of '%s' differs from its previous definition", line_,
             child.name.c_str());
    return false;
  }
  // The child has no parent yet, so it is the top of its own chain: the
  // link closes a cycle exactly when the parent's chain ends at the child.
  const Modality* top = &parent;
  while (top->parent) top = top->parent;
  if (top == &child) {
    setError("Error at line %d: query generates a cycle\n'%s' is on the path of '%s'", line_, child.name.c_str(),
             parent.name.c_str());
    return false;
  }
  child.parent = &parent;
  child.nextSibling = parent.firstChild;
  parent.firstChild = &child;
  if (isLeaf(child) || isLeaf(parent)) leafReached_ = true;
  return true;
}

int TaxonomyBuilder::finish() {
  if (failed_ || finished_) return 0;
  if (!leafReached_) {
    setError("No modalities of initial domain are covered by the query");
    return fail();
  }
  std::vector<Modality*> tops;
  try {
    for (Modality& leaf : variable_.modalities)
      if (!leaf.parent) tops.push_back(&leaf);
    for (Modality& node : variable_.nodes)
      if (!node.parent) tops.push_back(&node);
  } catch (const std::bad_alloc&) {
    setError("Memory allocation failed");
    return fail();
  }
  if (tops.size() == 1) {
    variable_.taxonomyRoot = tops.front();
    return succeed(1);
  }
  // The root is made even when a modality or a node of the query is already
  // called "root_". Everything after this point tells nodes apart by their
  // indexes (the links, the project file, the exported hierarchies); only
  // the rows of a taxonomy query look nodes up by name, and a new query
  // starts from the flat modalities, where the query's own "root_" is met
  // first anyway.
  Modality* root;
  try {
    root = &variable_.addNode(kRootName);
  } catch (const std::bad_alloc&) {
    setError("Creation of root modality failed");
    return fail();
  }
  for (Modality* top : tops) {
    top->parent = root;
    top->nextSibling = root->firstChild;
    root->firstChild = top;
  }
  variable_.taxonomyRoot = root;
  return succeed(static_cast<int>(tops.size()));
}

int TaxonomyBuilder::succeed(int coveringNodes) {
  finished_ = true;
  previous_.reset();
  return coveringNodes;
}

}  // namespace velda
