#include "ops/division/DivisionTree.h"

#include <algorithm>

#include "common/Format.h"
#include "common/MessageBox.h"
#include "model/ValueCopy.h"
#include "ops/division/CategoricalCuts.h"
#include "ops/division/GravityReport.h"
#include "ops/division/QuantitativeCuts.h"

namespace velda {

namespace {

constexpr size_t kLabelCapacity = 80;

const char kStopText[] =
    "THE DIVISIONS ARE STOPED: \n 1. It is not possible to divide singletons or objects having the same "
    "descriptions \n i.e. the same median value on each criterion-variable \n 2. Each split-variable has at least a "
    "missing data\n 3.Each split-variable has at leat 12 categories";

}  // namespace

DivisionTree::DivisionTree(const SymbolicMatrix& matrix, const ReductionRecord& record, int32_t classes,
                           CancelPoll& cancel, MissingValueNotice& notice)
    : matrix_(matrix),
      record_(record),
      classes_(classes),
      cancel_(cancel),
      notice_(notice),
      data_(matrix, record),
      quantitative_(matrix.categoricalCount() == 0) {}

void DivisionTree::addNode(int32_t parent, NodeNumber number, std::vector<char> members, std::string label) {
  DivisionNode node;
  node.parent = parent;
  node.number = number;
  node.count = static_cast<int32_t>(std::count(members.begin(), members.end(), 1));
  node.members = std::move(members);
  if (label.size() > kLabelCapacity) label.resize(kLabelCapacity);
  node.label = std::move(label);
  nodes_.push_back(std::move(node));
  DivisionNode& added = nodes_.back();
  writeGravityCentre(matrix_, &data_, &added.members, record_.assertion().id, notice_);
  added.best = quantitative_ ? findQuantitativeCut(data_, added.members) : findCategoricalCut(&data_, &added.members);
}

DivisionTree::Outcome DivisionTree::grow() {
  nodes_.reserve(static_cast<size_t>(2 * classes_ - 1));
  addNode(0, 1, std::vector<char>(record_.members().size(), 1), std::string());
  for (int32_t c = 1; c < classes_; ++c) {
    if (cancel_.requested()) return Outcome::Cancelled;
    const int32_t leaf = chooseLeaf();
    if (leaf < 0) {
      showMessage(kStopText, MessageIcon::Warning);
      return Outcome::Stopped;
    }
    cut(static_cast<size_t>(leaf), c);
  }
  return Outcome::Complete;
}

// The first leaf, in node order, whose best cut has the largest quality.
int32_t DivisionTree::chooseLeaf() const {
  int32_t chosen = -1;
  double quality = -1.0;
  for (size_t n = 0; n < nodes_.size(); ++n) {
    const DivisionNode& node = nodes_[n];
    if (node.cut != 0 || !(node.best.quality > quality)) continue;
    chosen = static_cast<int32_t>(n);
    quality = node.best.quality;
  }
  return chosen;
}

bool DivisionTree::inLeft(size_t i, const DivisionCut& cut) const {
  const auto v = static_cast<size_t>(cut.variable);
  if (data_.missing(i, v)) return false;
  if (quantitative_) return data_.number(i, v) <= cut.value;
  return (cut.subset >> data_.category(i, v)) & 1u;
}

void DivisionTree::cut(size_t position, int32_t cutNumber) {
  const DivisionCut best = nodes_[position].best;
  const std::vector<char>& members = nodes_[position].members;
  std::vector<char> left(members.size(), 0);
  std::vector<char> right(members.size(), 0);
  int32_t leftCount = 0;
  for (size_t i = 0; i < members.size(); ++i) {
    if (!members[i]) continue;
    if (inLeft(i, best)) {
      left[i] = 1;
      ++leftCount;
    } else {
      right[i] = 1;
    }
  }
  const int32_t rightCount = nodes_[position].count - leftCount;
  nodes_[position].cut = cutNumber;
  const NodeNumber number = nodes_[position].number;
  const auto parent = static_cast<int32_t>(position + 1);
  addNode(parent, 2 * number, std::move(left), format(" Classe %d (Ng=%d)", cutNumber, leftCount));
  addNode(parent, 2 * number + 1, std::move(right), format(" Classe %d (Nd=%d)", cutNumber, rightCount));
}

Horde DivisionTree::horde() const {
  Horde horde;
  horde.individualCount = record_.size();
  const size_t cells = matrix_.cellCount();
  const Assertion& divided = record_.assertion();
  for (const DivisionNode& node : nodes_) {
    if (node.cut != 0) continue;
    auto member = derivedAssertion(divided, divided.id + decimalText(node.number),
                                   static_cast<int32_t>(horde.classes.size()), cells);
    for (size_t i = 0; i < node.members.size(); ++i) {
      if (!node.members[i]) continue;
      const Individual* individual = record_.members()[i];
      member->members.push_back(const_cast<Individual*>(individual));
      accumulateMember(*member, *individual, cells);
    }
    std::vector<int32_t> path;
    for (int32_t up = node.parent; up > 0; up = nodes_[static_cast<size_t>(up - 1)].parent)
      path.push_back(nodes_[static_cast<size_t>(up - 1)].cut);
    std::sort(path.begin(), path.end());
    horde.classes.push_back(std::move(member));
    horde.labels.push_back(node.label);
    horde.cutPaths.push_back(std::move(path));
  }
  return horde;
}

}  // namespace velda
