#include "document/project/ProjectWriter.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "common/StringHash.h"
#include "document/CompactOrder.h"
#include "document/project/ProjectFormat.h"
#include "model/CategoricalValue.h"
#include "model/CategoricalVariable.h"
#include "model/QuantitativeValue.h"
#include "model/QuantitativeVariable.h"
#include "model/SymbolicMatrix.h"

namespace velda {

namespace {

using namespace project;

uint32_t indexHash(int32_t index) { return static_cast<uint32_t>(index); }

template <typename Table>
auto byName(const Table& table) {
  return compactOrder(table, [](const auto& value) { return stringHash(value.name); });
}

template <typename Table>
auto byId(const Table& table) {
  return compactOrder(table, [](const auto& value) { return stringHash(value.id); });
}

template <typename Table>
auto byIndex(const Table& table) {
  return compactOrder(table, [](const auto& value) { return indexHash(value.index); });
}

uint16_t truncated(size_t count) { return static_cast<uint16_t>(count); }
uint16_t truncated(int32_t count) { return static_cast<uint16_t>(static_cast<uint32_t>(count)); }

}  // namespace

bool ProjectWriter::write() {
  if (matrix_.variableCount() > kNone || matrix_.cellCount() > matrix_.variableCount() || !number()) {
    out_.fail();
    return false;
  }
  out_.string(kMagic);
  out_.u32(static_cast<uint32_t>(matrix_.individualCount()));
  out_.u32(static_cast<uint32_t>(matrix_.assertionCount()));
  writeHeader();
  writeTexts();
  for (size_t v = 0; v < matrix_.variableCount(); ++v) writeVariable(v);
  for (const auto& rule : matrix_.rules) writeRule(*rule);
  for (const Assertion* assertion : byId(matrix_.assertions)) writeAssertion(*assertion);
  for (const Individual* individual : byId(matrix_.individuals)) writeIndividual(*individual);
  return !out_.failed();
}

bool ProjectWriter::number() {
  numbering_.resize(matrix_.variableCount());
  for (size_t v = 0; v < matrix_.variableCount(); ++v) {
    if (!matrix_.variable(v).isCategorical()) continue;
    const auto& variable = static_cast<const CategoricalVariable&>(matrix_.variable(v));
    Numbering& numbering = numbering_[v];
    if (variable.modalityCount() + variable.nodeCount() > kNone) return false;
    numbering.leaves = byName(variable.modalities);
    numbering.nodes = byName(variable.nodes);

    // Leaves then nodes, each in the order of their indexes: a read gives
    // every modality its number as index, so dense indexes come back as
    // they were.
    int32_t indexEnd = 0;
    for (const auto* table : {&numbering.leaves, &numbering.nodes})
      for (const Modality* m : *table) indexEnd = std::max(indexEnd, m->index + 1);
    numbering.byIndex.assign(static_cast<size_t>(indexEnd), kNone);
    uint16_t next = 0;
    for (const auto* table : {&numbering.leaves, &numbering.nodes}) {
      std::vector<const Modality*> byIndex = *table;
      std::sort(byIndex.begin(), byIndex.end(),
                [](const Modality* a, const Modality* b) { return a->index < b->index; });
      for (const Modality* m : byIndex) numbering.byIndex[static_cast<size_t>(m->index)] = next++;
    }
  }
  return true;
}

uint16_t ProjectWriter::numberOf(size_t variable, int32_t index) const {
  const std::vector<uint16_t>& numbers = numbering_[variable].byIndex;
  if (index < 0 || static_cast<size_t>(index) >= numbers.size()) return kNone;
  return numbers[static_cast<size_t>(index)];
}

uint16_t ProjectWriter::numberOf(size_t variable, const Modality* modality) const {
  return modality ? numberOf(variable, modality->index) : kNone;
}

void ProjectWriter::writeHeader() {
  std::array<uint16_t, kHeaderCounters> counters{};
  counters[kVariables] = truncated(matrix_.variableCount());
  counters[kQuantitativeVariables] = truncated(matrix_.quantitativeCount());
  counters[kCategoricalVariables] = truncated(matrix_.categoricalCount());
  counters[kTaxonomies] = truncated(matrix_.taxonomyCount());
  counters[kCellVariables] = truncated(matrix_.cellCount());
  counters[kCellTaxonomies] = truncated(matrix_.cellTaxonomyCount());
  counters[kMotherCandidates] = truncated(matrix_.motherCandidateCount());
  counters[kReductionThreshold] = truncated(matrix_.reductionThreshold);
  counters[kRules] = truncated(matrix_.rules.size());
  counters[kDivisionClasses] = truncated(matrix_.divisionClassCount);
  for (uint16_t counter : counters) out_.u16(counter);
}

void ProjectWriter::writeTexts() {
  out_.optionalString(matrix_.individualColumn);
  out_.optionalString(matrix_.assertionColumn);
  out_.optionalString(matrix_.weightColumn);
  std::array<unsigned char, kTextBlockSize> block{};
  std::memcpy(block.data(), matrix_.title.data(), std::min(matrix_.title.size(), kTitleSize - 1));
  std::memcpy(block.data() + kTitleSize, matrix_.subtitle.data(), std::min(matrix_.subtitle.size(), kTitleSize - 1));
  out_.bytes(block);
}

void ProjectWriter::writeVariable(size_t v) {
  const SymbolicVariable& variable = matrix_.variable(v);
  out_.u16(variable.isCategorical() ? kCategorical : kQuantitative);
  out_.u16(static_cast<uint16_t>(variable.multiple));
  out_.u16(variable.active ? 1 : 0);
  out_.string(variable.name);
  if (variable.isCategorical()) {
    writeModalities(v, static_cast<const CategoricalVariable&>(variable));
    return;
  }
  const auto& quantitative = static_cast<const QuantitativeVariable&>(variable);
  out_.f64(quantitative.min);
  out_.f64(quantitative.max);
}

void ProjectWriter::writeModalities(size_t v, const CategoricalVariable& variable) {
  const Numbering& numbering = numbering_[v];
  const uint16_t root = numberOf(v, variable.taxonomyRoot);
  out_.u16(truncated(numbering.leaves.size()));
  out_.u16(truncated(numbering.nodes.size()));
  out_.u16(truncated(variable.mode));
  out_.u16(root);
  for (const auto* table : {&numbering.leaves, &numbering.nodes}) {
    for (const Modality* modality : *table) {
      out_.string(modality->name);
      out_.u16(numberOf(v, modality));
      if (root == kNone) continue;
      out_.u16(numberOf(v, modality->parent));
      out_.u16(numberOf(v, modality->firstChild));
      out_.u16(numberOf(v, modality->nextSibling));
    }
  }
}

void ProjectWriter::writeRule(const DependenceRule& rule) {
  const auto mother = static_cast<size_t>(rule.mother);
  if (rule.mother < 0 || rule.daughter < 0 || mother >= numbering_.size() ||
      static_cast<size_t>(rule.daughter) >= numbering_.size()) {
    out_.fail();
    return;
  }
  out_.u16(truncated(rule.mother));
  out_.u16(truncated(rule.daughter));
  for (const ApplicableModality* modality : byIndex(rule.applicable)) {
    const uint16_t number = numberOf(mother, modality->index);
    if (number == kNone) out_.fail();
    out_.u16(number);
  }
  out_.u16(kNone);
}

void ProjectWriter::writeAssertion(const Assertion& assertion) {
  if (assertion.values.size() != matrix_.variableCount()) {
    out_.fail();
    return;
  }
  out_.string(assertion.id);
  out_.u32(static_cast<uint32_t>(assertion.number));
  out_.u32(static_cast<uint32_t>(assertion.memberCount));
  for (size_t v = 0; v < assertion.values.size(); ++v) {
    const SymbolicValue& value = assertion.value(v);
    if (!matrix_.variable(v).isCategorical()) {
      const auto& interval = static_cast<const QuantitativeValue&>(value);
      for (double field : {value.naWeight, value.nullWeight, value.totalWeight, interval.min, interval.max})
        out_.f64(field);
      continue;
    }
    const auto& categorical = static_cast<const CategoricalValue&>(value);
    out_.u16(truncated(categorical.entries.size()));
    for (double field : {value.naWeight, value.nullWeight, value.totalWeight}) out_.f64(field);
    for (const ValueEntry* entry : byIndex(categorical.entries)) {
      const uint16_t number = numberOf(v, entry->index);
      if (number == kNone) out_.fail();
      out_.u16(number);
      out_.f64(entry->weight);
      out_.f64(entry->subtreeWeight);
    }
  }
}

void ProjectWriter::writeIndividual(const Individual& individual) {
  out_.string(individual.id);
  out_.f64(individual.weight);
  individual.forEachAssertion([&](const Assertion* a) { out_.u32(static_cast<uint32_t>(a->number)); });
  out_.u32(kEndOfMemberships);
  for (size_t v = 0; v < matrix_.cellCount(); ++v) writeCell(v, individual.cells[v]);
}

void ProjectWriter::writeCell(size_t v, const CellValue& cell) {
  out_.u8(static_cast<uint8_t>(cell.flags & (CELL_MODALITY | CELL_NUMBER | CELL_NULL | CELL_NA)));
  if (cell.isMissing()) return;
  if (cell.flags & CELL_MODALITY) {
    const uint16_t number = matrix_.variable(v).isCategorical() ? numberOf(v, cell.modality) : kNone;
    if (number == kNone) out_.fail();
    out_.u16(number);
    return;
  }
  if (cell.flags & CELL_NUMBER) out_.f64(cell.number);
}

}  // namespace velda
