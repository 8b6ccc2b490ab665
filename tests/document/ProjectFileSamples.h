#pragma once

// Matrices built through the model, used by the project-file tests and as
// the seeds of the project-file fuzzer.

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "document/project/ProjectFile.h"
#include "model/CategoricalValue.h"
#include "model/CategoricalVariable.h"
#include "model/Dependence.h"
#include "model/QuantitativeVariable.h"
#include "model/SymbolicMatrix.h"
#include "model/Taxonomy.h"
#include "model/TaxonomyBuilder.h"

namespace velda::test {

// The samples are fixed data: a step that refuses them is a broken sample,
// in the unit tests and in the fuzz harness alike.
inline void mustSucceed(bool succeeded) {
  if (!succeeded) std::abort();
}

// The bytes that writeProject gives for the matrix ("" when it fails).
inline std::string projectBytes(const SymbolicMatrix& matrix) {
  char* data = nullptr;
  size_t size = 0;
  std::FILE* file = open_memstream(&data, &size);
  const bool written = file && writeProject(file, matrix);
  if (file) std::fclose(file);
  std::string bytes = written ? std::string(data, size) : std::string();
  std::free(data);
  return bytes;
}

inline std::unique_ptr<SymbolicMatrix> projectFromBytes(std::string_view bytes) {
  return readProject(std::span(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()));
}

// An individual with one cell per cell-holding variable from the texts
// (null: NULL), linked to the assertions in the order given and added to
// their values.
inline Individual& addIndividual(SymbolicMatrix& matrix, const char* id, double weight,
                                 std::initializer_list<const char*> texts,
                                 std::initializer_list<Assertion*> assertions) {
  Individual& individual = matrix.insertIndividual(Individual(id, matrix.cellCount(), weight));
  size_t v = 0;
  for (const char* text : texts) {
    static_cast<void>(matrix.variable(v).addCell(text, individual.cells[v]));
    ++v;
  }
  for (Assertion* assertion : assertions) {
    matrix.link(individual, *assertion);
    mustSucceed(matrix.addMember(*assertion, individual));
  }
  return individual;
}

// One interval variable x and one nominal variable c (modalities a, b),
// one assertion g of one individual i1: the file small enough to write out
// byte by byte.
inline std::unique_ptr<SymbolicMatrix> smallProject() {
  auto matrix = SymbolicMatrix::create();
  matrix->individualColumn = "id";
  matrix->assertionColumn = "grp";
  matrix->title = "T";
  matrix->appendVariable(std::make_unique<QuantitativeVariable>("x", 1));
  matrix->appendVariable(std::make_unique<CategoricalVariable>("c", 0, 1));
  if (!matrix->declareCellVariables(2, 1)) return nullptr;
  Assertion& g = matrix->createAssertion("g");
  addIndividual(*matrix, "i1", 1.0, {"2", "a"}, {&g});
  CellValue unused;
  static_cast<void>(matrix->variable(1).addCell("b", unused));
  return matrix;
}

// Every feature of the file: both quantitative kinds, nominal and
// set-valued variables in several modes, NULL and NA cells, a taxonomy with
// inner nodes (one named root_), a rule, an inactive variable, a variable beyond the
// cell-holding ones, an individual in two assertions, a weight column,
// title, subtitle and the stored parameters.
inline std::unique_ptr<SymbolicMatrix> fullProject() {
  auto matrix = SymbolicMatrix::create();
  matrix->individualColumn = "person";
  matrix->assertionColumn = "team";
  matrix->weightColumn = "w";
  matrix->title = "Teams";
  matrix->subtitle = "caf\xe9 2024";
  matrix->reductionThreshold = 80;
  matrix->divisionClassCount = 3;
  matrix->appendVariable(std::make_unique<QuantitativeVariable>("age", 0));
  matrix->appendVariable(std::make_unique<CategoricalVariable>("city", 0, 5));
  auto sports = std::make_unique<CategoricalVariable>("sports", 1, 5);
  sports->mode = MODE_CARDINALITY;
  matrix->appendVariable(std::move(sports));
  matrix->appendVariable(std::make_unique<QuantitativeVariable>("height", 1));
  if (!matrix->declareCellVariables(4, 2)) return nullptr;
  matrix->variable(3).active = 0;

  Assertion& a = matrix->createAssertion("red");
  Assertion& b = matrix->createAssertion("blue");
  Assertion& c = matrix->createAssertion("green");
  Assertion& d = matrix->createAssertion("gray");
  addIndividual(*matrix, "ann", 1.0, {"31", "paris", "ski", "1.7"}, {&a});
  addIndividual(*matrix, "bob", 2.5, {nullptr, "lyon", "golf", nullptr}, {&b, &c});
  addIndividual(*matrix, "cyd", 1.0, {"40", "nice", nullptr, "1.9"}, {&d});
  // A second set-valued contribution to red.
  CellValue foot;
  static_cast<void>(matrix->variable(2).addCell("foot", foot));
  static_cast<void>(a.value(2).addCell(foot, 2.0));

  auto extra = std::make_unique<CategoricalVariable>("extra", 1, 3);
  extra->mode = MODE_KT_ESTIMATE;
  matrix->appendVariable(std::move(extra));
  CellValue tag;
  static_cast<void>(matrix->variable(4).addCell("t1", tag));
  mustSucceed(b.value(4).addCell(tag, 1.0));

  {
    TaxonomyBuilder builder(static_cast<CategoricalVariable&>(matrix->variable(2)));
    using Row = std::array<std::optional<std::string_view>, 2>;
    // An inner node named like the root the builder adds above the tops.
    for (const Row& row : {Row{"ski", "winter"}, Row{"winter", "root_"}, Row{"golf", "summer"}, Row{"foot", "summer"}})
      mustSucceed(builder.addRow(row));
    mustSucceed(builder.finish() > 0);
  }
  settleTaxonomy(*matrix, 2);

  const std::array<int32_t, 1> applicable{0};  // paris
  const std::array<int32_t, 1> daughters{0};   // age
  RuleGroup group;
  mustSucceed(makeRuleGroup(*matrix, 1, applicable, daughters, group));
  mustSucceed(applyRule(*matrix, std::move(group)) == 1);
  mustSucceed(matrix->indexAssertions());
  return matrix;
}

}  // namespace velda::test
