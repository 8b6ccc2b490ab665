#pragma once

#include <gtest/gtest.h>

#include <array>
#include <initializer_list>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include "formats/SymbolicTextWriter.h"
#include "model/CategoricalVariable.h"
#include "model/QuantitativeVariable.h"
#include "model/SymbolicMatrix.h"
#include "model/Taxonomy.h"
#include "model/TaxonomyBuilder.h"

namespace velda::test {

// A matrix filled through the model's calls the way an extraction fills
// it, for the tests of the symbolic text writer.
struct WriterMatrix {
  size_t quantitative(const char* name, int32_t interval) {
    matrix->appendVariable(std::make_unique<QuantitativeVariable>(name, interval));
    return matrix->variableCount() - 1;
  }
  size_t categorical(const char* name, int32_t multiple, int32_t mode = MODE_BOOLEAN) {
    auto variable = std::make_unique<CategoricalVariable>(name, multiple, 1);
    if (multiple) variable->mode = mode;
    matrix->appendVariable(std::move(variable));
    return matrix->variableCount() - 1;
  }
  CategoricalVariable& category(size_t v) { return static_cast<CategoricalVariable&>(matrix->variable(v)); }

  // Adds one member's database text (null: NULL) to an assertion's value,
  // marked NA when asked, growing the variable's domain as a row would.
  void add(Assertion& a, size_t v, const char* text, double weight = 1.0, bool na = false) {
    CellValue cell;
    ASSERT_EQ(matrix->variable(v).addCell(text, cell), 1);
    if (na) cell.flags |= CELL_NA;
    ASSERT_EQ(a.value(v).addCell(cell, weight), 1);
  }

  void taxonomy(size_t v, std::initializer_list<std::pair<const char*, const char*>> links) {
    TaxonomyBuilder builder(category(v));
    for (const auto& [child, parent] : links) {
      const std::array<std::optional<std::string_view>, 2> row{child, parent};
      ASSERT_EQ(builder.addRow(row), 1);
    }
    ASSERT_GT(builder.finish(), 0);
    settleTaxonomy(*matrix, v);
  }

  std::string write(bool reduced = false) {
    std::ostringstream out;
    EXPECT_TRUE(WriteSymbolicText(out, *matrix, reduced));
    return out.str();
  }

  std::unique_ptr<SymbolicMatrix> matrix = SymbolicMatrix::create();
};

}  // namespace velda::test
