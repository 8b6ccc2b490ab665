#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "model/CategoricalVariable.h"
#include "model/QuantitativeVariable.h"
#include "model/SymbolicMatrix.h"

namespace velda::test {

// A symbolic data matrix built by hand through the model's own calls. Its
// tables have one bucket, so individuals and assertions are walked in the
// order they were made; categorical variables get one-bucket modality tables
// unless told otherwise, so modalities are walked in the order met.
struct HandMatrix {
  HandMatrix() : matrix(SymbolicMatrix::create(1, 1)) {}

  CategoricalVariable& categorical(const char* name, int32_t multiple = 0, size_t buckets = 1) {
    matrix->appendVariable(std::make_unique<CategoricalVariable>(name, multiple, buckets));
    return static_cast<CategoricalVariable&>(matrix->variable(matrix->variableCount() - 1));
  }
  QuantitativeVariable& quantitative(const char* name, int32_t interval = 1) {
    matrix->appendVariable(std::make_unique<QuantitativeVariable>(name, interval));
    return static_cast<QuantitativeVariable&>(matrix->variable(matrix->variableCount() - 1));
  }
  // Every variable made so far holds its cells in the individuals, as after
  // an extraction.
  void holdCells() {
    if (!matrix->declareCellVariables(matrix->variableCount(), matrix->categoricalCount())) std::abort();
  }

  // An individual with one text per cell-holding variable (null: NULL).
  Individual& person(const char* id, std::initializer_list<const char*> texts, double weight = 1.0) {
    Individual individual(id, matrix->cellCount(), weight);
    size_t v = 0;
    for (const char* text : texts) {
      static_cast<void>(matrix->variable(v).addCell(text, individual.cells[v]));
      ++v;
    }
    return matrix->insertIndividual(std::move(individual));
  }

  // An assertion whose members are added as the extraction adds them.
  Assertion& group(const char* id, std::initializer_list<Individual*> members) {
    Assertion& assertion = matrix->createAssertion(id);
    for (Individual* member : members) {
      matrix->link(*member, assertion);
      // A single-valued variable keeps its first member's value and refuses
      // the others' (false): hand matrices may mean that.
      static_cast<void>(matrix->addMember(assertion, *member));
    }
    return assertion;
  }

  // One more member of an assertion, added as the extraction adds it; its
  // values must fit the assertion's.
  void join(Assertion& assertion, Individual& member) {
    matrix->link(member, assertion);
    EXPECT_TRUE(matrix->addMember(assertion, member));
  }

  // A row outside the assertion table (a reduced assertion, a horde's class)
  // with an empty value per variable and the given members' cells added.
  std::unique_ptr<Assertion> row(const char* id, std::initializer_list<Individual*> members) {
    auto made = std::make_unique<Assertion>(id, 0);
    for (const auto& variable : matrix->variables()) made->values.push_back(variable->newSymbolicValue());
    for (Individual* member : members)
      for (size_t v = 0; v < matrix->cellCount(); ++v)
        EXPECT_TRUE(made->value(v).addCell(member->cells[v], member->weight));
    return made;
  }

  // The value as the symbolic text file writes it.
  static std::string written(const Assertion& assertion, size_t variable) {
    std::ostringstream out;
    assertion.value(variable).writeValue(out);
    return out.str();
  }

  std::unique_ptr<SymbolicMatrix> matrix;
};

// Whether each variable, in order, is marked as a rule's daughter.
inline std::vector<bool> daughterMarks(const SymbolicMatrix& matrix) {
  std::vector<bool> marks;
  for (size_t v = 0; v < matrix.variableCount(); ++v) marks.push_back(matrix.isDaughter(v));
  return marks;
}

}  // namespace velda::test
