#include "document/view/MatrixReports.h"

#include <memory>
#include <vector>

#include "model/CategoricalVariable.h"
#include "model/Dependence.h"
#include "model/SymbolicMatrix.h"
#include "model/SymbolicValue.h"

namespace velda {

namespace {

// The assertions by number when the matrix has them indexed, else in table
// order.
std::vector<const Assertion*> assertionsInOrder(const SymbolicMatrix& matrix) {
  if (matrix.assertionsIndexed()) return {matrix.orderedAssertions.begin(), matrix.orderedAssertions.end()};
  std::vector<const Assertion*> order;
  for (const Assertion& assertion : matrix.assertions) order.push_back(&assertion);
  return order;
}

template <typename Rows>
void writeAssertionRows(const SymbolicMatrix& matrix, const Rows& rows, std::ostream& out) {
  out << "Assertion\tIndividuals";
  for (const auto& variable : matrix.variables()) out << '\t' << variable->name;
  out << '\n';
  for (const auto& row : rows) {
    if (!row) continue;
    out << row->id << '\t' << row->memberCount;
    for (size_t v = 0; v < row->values.size(); ++v) {
      out << '\t';
      row->value(v).writeText(out);
    }
    out << '\n';
  }
}

void writeNode(const Modality& node, int depth, std::ostream& out) {
  out << std::string(static_cast<size_t>(depth) * 2, ' ') << node.name << '\n';
  for (const Modality* child = node.firstChild; child; child = child->nextSibling) writeNode(*child, depth + 1, out);
}

}  // namespace

void writeIndividualsTable(const SymbolicMatrix& matrix, std::ostream& out) {
  out << (matrix.individualColumn.empty() ? "Individual" : matrix.individualColumn) << "\tWeight";
  const size_t cells = std::min(matrix.cellCount(), matrix.variableCount());
  for (size_t v = 0; v < cells; ++v) out << '\t' << matrix.variable(v).name;
  out << "\tAssertions\n";
  for (const Individual& individual : matrix.individuals) {
    out << individual.id << '\t' << individual.weight;
    for (size_t v = 0; v < cells; ++v) out << '\t' << cellText(individual.cells[v]);
    out << '\t';
    const char* separator = "";
    individual.forEachAssertion([&](const Assertion* assertion) {
      out << separator << assertion->id;
      separator = ", ";
    });
    out << '\n';
  }
}

void writeAssertionsTable(const SymbolicMatrix& matrix, std::ostream& out) {
  writeAssertionRows(matrix, assertionsInOrder(matrix), out);
}

void writeReducedAssertionsTable(const SymbolicMatrix& matrix, std::ostream& out) {
  writeAssertionRows(matrix, matrix.reducedAssertions, out);
}

void writeHordesTable(const SymbolicMatrix& matrix, bool reduced, std::ostream& out) {
  out << "Assertion\tClass\tLabel\tIndividuals";
  for (const auto& variable : matrix.variables()) out << '\t' << variable->name;
  out << '\n';
  const std::vector<const Assertion*> divided = assertionsInOrder(matrix);
  for (size_t h = 0; h < matrix.hordes.size(); ++h) {
    const Horde& horde = matrix.hordes[h];
    const auto& classes = reduced ? horde.reducedClasses : horde.classes;
    for (size_t c = 0; c < classes.size(); ++c) {
      const Assertion& row = *classes[c];
      out << (h < divided.size() && divided[h] ? divided[h]->id : std::string()) << '\t' << horde.classes[c]->id << '\t'
          << (c < horde.labels.size() ? horde.labels[c] : std::string()) << '\t' << row.memberCount;
      for (size_t v = 0; v < row.values.size(); ++v) {
        out << '\t';
        row.value(v).writeText(out);
      }
      out << '\n';
    }
  }
}

void writeVolumeMatrixReport(const SymbolicMatrix& matrix, bool before, std::ostream& out) {
  const TriangularMatrix& volumes = before ? matrix.volumesBefore : matrix.volumesAfter;
  out << "Volume matrix " << (before ? "before" : "after") << " reduction:\n";
  for (size_t i = 0; i < volumes.order; ++i) {
    for (size_t j = 0; j <= i; ++j) out << (j ? "\t" : "") << volumes.at(i, j);
    out << '\n';
  }
}

void writeTaxonomiesReport(const SymbolicMatrix& matrix, std::ostream& out) {
  for (const auto& variable : matrix.variables()) {
    if (!variable->isCategorical()) continue;
    const auto& categorical = static_cast<const CategoricalVariable&>(*variable);
    if (!categorical.hasTaxonomy()) continue;
    out << "Taxonomy of " << categorical.name << ":\n";
    writeNode(*categorical.taxonomyRoot, 1, out);
  }
}

void writeDependencesReport(const SymbolicMatrix& matrix, std::ostream& out) {
  for (const auto& rule : matrix.rules) {
    out << "  ";
    describeRule(matrix, *rule, out);
    out << '\n';
  }
}

}  // namespace velda
