#pragma once

#include <string>
#include <vector>

namespace velda::symlib {

// The library's own picture of a symbolic file: what the reader builds and
// the writers print. Numbers are the 1-based numbers of the file.

struct SymIndividual {
  long long number = 0;
  std::string code;
  std::string label;
  bool operator==(const SymIndividual&) const = default;
};

// A category of a categorical variable, or an inner node of a hierarchy
// (leaves is then 0).
struct SymCategory {
  long long number = 0;
  std::string code;
  std::string label;
  long long leaves = 1;
  bool operator==(const SymCategory&) const = default;
};

enum class SymVariableKind { Continue, InterContinue, Nominal, MultNominal, MultNominalModif };

// Only the frequency-weighted kind carries a weighting.
enum class SymWeighting { None, Cardinal, Proba };

struct SymVariable {
  long long number = 0;
  SymVariableKind kind = SymVariableKind::Continue;
  SymWeighting weighting = SymWeighting::None;
  std::string comment;
  std::string code;
  std::string label;
  double naCount = 0;
  double nuCount = 0;
  double min = 0;  // quantitative kinds
  double max = 0;
  long long declaredCategories = 0;  // the m of the file
  std::vector<SymCategory> categories;

  bool isCategorical() const { return kind >= SymVariableKind::Nominal; }
  bool operator==(const SymVariable&) const = default;
};

// Keyword of a kind as the text file spells it.
const char* SymVariableKindWord(SymVariableKind kind);

struct SymItem {
  long long number = 0;
  double weight = 0;  // weighted lists only
  bool operator==(const SymItem&) const = default;
};

struct SymValue {
  enum class Kind { NA, NU, Real, Interval, Category, CategorySet, WeightedSet };
  Kind kind = Kind::NU;
  double low = 0;  // Real: the number; Interval: the lower end
  double high = 0;
  long long category = 0;
  std::vector<SymItem> items;  // CategorySet and WeightedSet

  bool operator==(const SymValue&) const = default;
};

// One "node = (children)" entry of a hierarchy.
struct SymHierarchyLink {
  long long node = 0;
  std::vector<long long> children;
  bool operator==(const SymHierarchyLink&) const = default;
};

struct SymHierarchy {
  long long variable = 0;
  long long declaredInnerNodes = 0;
  std::vector<SymCategory> innerNodes;
  std::vector<SymHierarchyLink> links;
  bool operator==(const SymHierarchy&) const = default;
};

// When the premise variable takes the premise value, the conclusion
// variable takes the conclusion value (NA for the program's dependences).
struct SymRule {
  long long premiseVariable = 0;
  SymValue premise;
  long long conclusionVariable = 0;
  SymValue conclusion;
  bool operator==(const SymRule&) const = default;
};

using SymRow = std::vector<SymValue>;
using SymTriangle = std::vector<std::vector<double>>;

}  // namespace velda::symlib
