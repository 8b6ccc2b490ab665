#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/AnalysisResults.h"
#include "model/SymbolicMatrix.h"
#include "ops/CancelPoll.h"
#include "ops/division/DivisionCut.h"
#include "ops/division/DivisionData.h"
#include "ops/division/GravityReport.h"
#include "ops/reduction/NodeNumber.h"
#include "ops/reduction/ReductionRecord.h"

namespace velda {

// One node of a division tree.
struct DivisionNode {
  int32_t parent = 0;         // position of the parent in the node array, from 1; 0 for the root
  NodeNumber number = 1;      // root 1, children 2n (left) and 2n + 1 (right)
  int32_t cut = 0;            // the number of the cut that split it, 0 while a leaf
  std::vector<char> members;  // per individual of the assertion: 1 when in the node
  int32_t count = 0;
  DivisionCut best;
  std::string label;  // at most 80 characters
};

// Divides one assertion into K classes by successive cuts of the leaf whose
// best cut has the largest quality. Nodes are kept in creation order.
class DivisionTree {
 public:
  enum class Outcome { Complete, Stopped, Cancelled };

  DivisionTree(const SymbolicMatrix& matrix, const ReductionRecord& record, int32_t classes, CancelPoll& cancel,
               MissingValueNotice& notice);

  // Makes K - 1 cuts, writing each node's gravity centre to "result.txt".
  // Stopped: no leaf could be cut (the stop box was shown). Throws
  // std::bad_alloc.
  Outcome grow();

  const std::vector<DivisionNode>& nodes() const { return nodes_; }
  // The classes, one per leaf in node order. Throws std::bad_alloc.
  Horde horde() const;

 private:
  void addNode(int32_t parent, NodeNumber number, std::vector<char> members, std::string label);
  void cut(size_t position, int32_t cutNumber);
  bool inLeft(size_t i, const DivisionCut& cut) const;
  int32_t chooseLeaf() const;

  const SymbolicMatrix& matrix_;
  const ReductionRecord& record_;
  int32_t classes_;
  CancelPoll& cancel_;
  MissingValueNotice& notice_;
  DivisionData data_;
  bool quantitative_;
  std::vector<DivisionNode> nodes_;
};

}  // namespace velda
