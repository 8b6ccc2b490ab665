#pragma once

#include <vector>

#include "common/ChainedHashTable.h"
#include "model/Modality.h"
#include "model/SymbolicVariable.h"

namespace velda {

using ModalityTable = ChainedHashTable<Modality, StringKeyTraits<Modality, &Modality::name>>;

// How the weights of a set-valued variable are shown.
enum CategoricalMode : int32_t {
  MODE_BOOLEAN = 0,
  MODE_CARDINALITY = 1,
  MODE_PROBABILIST = 2,
  MODE_KT_ESTIMATE = 3,
};

// A variable built from a character column: one modality per individual, a
// category, or a weighted set of categories, per assertion.
struct DetachedTaxonomy;

class CategoricalVariable final : public SymbolicVariable {
 public:
  static constexpr size_t kNodeTableBuckets = 10;

  CategoricalVariable(std::string name, int32_t multiple, size_t modalityBuckets);

  bool isCategorical() const override { return true; }
  [[nodiscard]] bool addCell(const char* text, CellValue& cell) override;
  void writeDescription(std::ostream& out) const override;
  void writeDeclaration(std::ostream& out, int32_t number, double naCount, double nuCount,
                        const DeclarationStyle& style) const override;
  std::unique_ptr<SymbolicValue> newSymbolicValue() const override;

  size_t modalityCount() const { return modalities.size(); }
  size_t nodeCount() const { return nodes.size(); }
  bool hasTaxonomy() const { return taxonomyRoot != nullptr; }

  // The modality or taxonomy node with this index, or null.
  const Modality* byIndex(int32_t index) const;
  Modality* byIndex(int32_t index);
  // A leaf modality or taxonomy node by name, or null.
  Modality* findNode(std::string_view name);

  // Creates a leaf modality with the next index (or the given one, when a
  // project file is read). Throws std::bad_alloc, leaving the variable
  // unchanged.
  Modality& addModality(std::string name, int32_t index = -1);
  // Creates an inner taxonomy node with the next index (after the leaves
  // and the nodes already made), or the given one. Throws std::bad_alloc.
  Modality& addNode(std::string name, int32_t index = -1);
  // Destroys the inner nodes and clears every parent and child link.
  void clearTaxonomy();
  // Takes the hierarchy out into `into` (made beforehand), leaving the
  // variable as clearTaxonomy does, so that a new hierarchy can be built
  // while the old one waits. Throws std::bad_alloc leaving the variable
  // unchanged.
  void detachTaxonomy(DetachedTaxonomy& into);
  // Destroys the current hierarchy and puts a detached one back exactly as
  // it was. Allocates nothing, so it cannot fail.
  void restoreTaxonomy(DetachedTaxonomy& detached);
  // Lets the modality and node tables grow by any number of names at a
  // constant cost per insert and lookup, whatever their bucket counts (kept,
  // as they decide the order). Throws std::bad_alloc when memory runs out;
  // the tables then work as before, only slower.
  void indexNames();
  // Rehashes the modality table to as many buckets as modalities; its chains
  // are then short and its name index, if any, is given back.
  void compact();
  // Per index, the number of leaves (nodes without children) in the node's
  // subtree of the taxonomy: 1 for a node without children.
  std::vector<int32_t> leafCounts() const;

  int32_t mode;
  Modality* taxonomyRoot = nullptr;
  ModalityTable modalities;
  ModalityTable nodes;

 private:
  Modality& registerIndex(ModalityTable& table, std::string name, int32_t index);

  std::vector<Modality*> byIndex_;  // leaves then nodes, by index
};

// A hierarchy taken out of its variable: its inner nodes, the links of the
// variable's leaves, its root and how many indexes it used.
struct DetachedTaxonomy {
  struct Links {
    Modality* parent;
    Modality* firstChild;
    Modality* nextSibling;
  };

  DetachedTaxonomy() : nodes(CategoricalVariable::kNodeTableBuckets) {}

  ModalityTable nodes;
  std::vector<Links> leafLinks;  // in the order of the modality table
  Modality* root = nullptr;
  size_t indexCount = 0;
};

}  // namespace velda
