#pragma once

#include <cstdint>

#include "common/ChainedHashTable.h"
#include "model/CategoricalValue.h"

namespace velda {

// A modality of the mother for which the daughter is applicable.
struct ApplicableModality {
  explicit ApplicableModality(int32_t index) : index(index) {}
  int32_t index;
};

using ApplicableSet = ChainedHashTable<ApplicableModality, ModalityIndexTraits<ApplicableModality>>;

// "daughter is applicable if mother in {set}". Rules made together form a
// group: same mother and set, one daughter each, chained through next.
struct DependenceRule {
  DependenceRule(int32_t mother, int32_t daughter, size_t buckets)
      : mother(mother), daughter(daughter), applicable(buckets) {}

  int32_t mother;
  int32_t daughter;
  ApplicableSet applicable;
  DependenceRule* next = nullptr;  // next rule of the same group
};

}  // namespace velda
