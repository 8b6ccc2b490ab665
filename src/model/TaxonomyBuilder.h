#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string_view>

namespace velda {

class CategoricalVariable;
class Modality;
struct DetachedTaxonomy;

// One row of a taxonomy query: a node's name, then the names of its
// ancestors upwards. An empty optional is a NULL column.
using TaxonomyRow = std::span<const std::optional<std::string_view>>;

// Builds the hierarchy of a categorical variable from the rows of a taxonomy
// query, row by row. While it works the variable shows only the new
// hierarchy; the previous one is set aside and dropped when finish()
// succeeds. Every failure sets the last-error text, discards everything
// linked so far and puts the previous hierarchy back; a builder that is
// dropped before finish() succeeded does the same, so the variable never
// keeps half a hierarchy and a failed or cancelled query changes nothing.
class TaxonomyBuilder {
 public:
  static constexpr const char* kRootName = "root_";

  explicit TaxonomyBuilder(CategoricalVariable& variable);
  ~TaxonomyBuilder();
  TaxonomyBuilder(const TaxonomyBuilder&) = delete;
  TaxonomyBuilder& operator=(const TaxonomyBuilder&) = delete;

  // Links the path of the next row (lines are numbered from 1). Returns true,
  // or false after a failure (and for every row after one).
  [[nodiscard]] bool addRow(TaxonomyRow row);

  // Completes the hierarchy and gives the variable its root. Returns the
  // number of nodes that cover the initial domain (at least 1), or 0.
  //
  // The covering nodes are the tops of the hierarchy after the last row:
  // the modalities and inner nodes without a parent, a modality that no row
  // named counting as a top of its own. With more than one top, a node
  // "root_" (the next index, so the last node) is made the parent of every
  // top: the modalities in table order, then the inner nodes, each put in
  // front of root_'s children as any link does.
  [[nodiscard]] int finish();

 private:
  [[nodiscard]] bool link(Modality& child, Modality& parent);
  // The leaf modality or inner node with this name, created as an inner
  // node when missing; null when memory runs out.
  Modality* nodeNamed(std::string_view name);
  bool isLeaf(const Modality& node) const;
  [[nodiscard]] bool fail();
  [[nodiscard]] int succeed(int coveringNodes);
  void restorePrevious();

  CategoricalVariable& variable_;
  std::unique_ptr<DetachedTaxonomy> previous_;
  int line_ = 0;
  bool failed_ = false;
  bool finished_ = false;
  bool leafReached_ = false;
};

}  // namespace velda
