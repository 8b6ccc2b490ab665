#pragma once

#include <ostream>

namespace velda {

class SymbolicMatrix;

// The text tables that the view commands show, one line per row, fields
// separated by tabs, a heading line first.
//
// Individuals: the individual column's name (or "Individual"), "Weight",
// the names of the variables whose cells individuals hold, "Assertions";
// one row per individual in table order with its weight, each cell's text
// ("NULL", "NA", the modality, the number with two decimals) and the
// identifiers of its assertions, newest first, separated by ", ".
void writeIndividualsTable(const SymbolicMatrix& matrix, std::ostream& out);

// Assertions: "Assertion", "Individuals", then every variable's name; one
// row per assertion in number order with its member count and each value
// in its bracketed display form.
void writeAssertionsTable(const SymbolicMatrix& matrix, std::ostream& out);

// The reduced assertions of the last reduction, laid out like the
// assertions.
void writeReducedAssertionsTable(const SymbolicMatrix& matrix, std::ostream& out);

// Hordes: "Assertion", "Class", "Label", "Individuals", then every
// variable's name; one row per class of every horde, in assertion order then
// class order, with the divided assertion's identifier, the class's name,
// the label of its node in the division tree (" Classe 1 (Ng=12)"), its
// member count and its values. With `reduced`, the values of the reduced
// classes.
void writeHordesTable(const SymbolicMatrix& matrix, bool reduced, std::ostream& out);

// The volume matrix before or after the last reduction, one row per
// assertion ("Volume matrix before reduction:" or "... after ...", then
// row i with the entries (i,0) .. (i,i) separated by tabs).
void writeVolumeMatrixReport(const SymbolicMatrix& matrix, bool before, std::ostream& out);

// Every taxonomy: "Taxonomy of <variable>:" and then its tree from the root,
// one node per line, indented by two blanks per level, children in the
// order of the node's child list.
void writeTaxonomiesReport(const SymbolicMatrix& matrix, std::ostream& out);

// Every dependence rule, one per line in list order, as the console lists
// them when they are added.
void writeDependencesReport(const SymbolicMatrix& matrix, std::ostream& out);

}  // namespace velda
