#pragma once

// Random matrices with everything that has ever made a written file
// unreadable, and the check that every file written from them reads back:
// the property test and the fuzz target share both.

#include <algorithm>
#include <cstdint>
#include <functional>
#include <sstream>
#include <string>

#include "document/ProjectFileSamples.h"
#include "document/export/DocumentMetadata.h"
#include "formats/SymbolicTextWriter.h"
#include "formats/library/SymbolicLibrary.h"
#include "model/Dependence.h"
#include "support/HandMatrix.h"

namespace velda::test {

// The source of every choice: a number below the bound given.
using Choose = std::function<uint32_t(uint32_t bound)>;

inline std::string randomText(const Choose& choose) {
  static const char* const kPieces[] = {"a",     " ",   "\"", ",",  "<x>", "&", "\x01", "\t", "\xe9", "\xe0", "\xff",
                                        "KORVA", "END", "NA", "NU", "(",   ")", "=",    "'",  "12",   "-"};
  if (choose(16) == 0) return std::string(254, 'n');
  std::string text;
  for (uint32_t n = choose(8); n > 0; --n) text += kPieces[choose(sizeof kPieces / sizeof *kPieces)];
  return text;
}

// A random text made unique by a number inside it, so that it may still
// begin with '<' and end with '>'.
inline std::string uniqueText(const Choose& choose, uint32_t number) {
  return randomText(choose) + "#" + std::to_string(number) + randomText(choose);
}

inline double randomWeight(const Choose& choose) {
  static const double kWeights[] = {1, 1e-300, 1e-17, 0.5, 3, 1e17, 1e100, 1e150};
  return kWeights[choose(sizeof kWeights / sizeof *kWeights)];
}

inline std::string randomNumber(const Choose& choose) {
  static const char* const kNumbers[] = {"0", "-1", "12.5", "1e10", "-3.25e-7", "123456789", "1e300"};
  return kNumbers[choose(sizeof kNumbers / sizeof *kNumbers)];
}

inline std::unique_ptr<SymbolicMatrix> randomMatrix(const Choose& choose, uint32_t maxCategories) {
  HandMatrix hand;
  // Single-valued variables only where every group is one individual.
  const bool onePerGroup = choose(3) == 0;
  const auto multiple = [&] { return static_cast<int32_t>(onePerGroup ? choose(2) : 1); };
  const uint32_t variables = 1 + choose(4);
  for (uint32_t v = 0; v < variables; ++v) {
    const std::string name = uniqueText(choose, v);
    if (choose(2)) {
      auto& variable = hand.categorical(name.c_str(), multiple(), 1 + choose(7));
      if (variable.multiple) variable.mode = static_cast<int32_t>(choose(4));  // a single value is boolean
    } else {
      hand.quantitative(name.c_str(), multiple());
    }
  }
  hand.holdCells();
  SymbolicMatrix& matrix = *hand.matrix;
  std::vector<std::string> categories;
  for (uint32_t c = choose(maxCategories + 1); c > 0; --c) categories.push_back(uniqueText(choose, c));
  if (categories.empty()) categories.push_back("only");
  const uint32_t people = 1 + choose(30);
  const uint32_t groups = onePerGroup ? people : std::min(people, 1 + choose(4));
  std::vector<Assertion*> assertions;
  for (uint32_t g = 0; g < groups; ++g) {
    assertions.push_back(&matrix.createAssertion(uniqueText(choose, g)));
  }
  for (uint32_t i = 0; i < people; ++i) {
    Individual& person =
        matrix.insertIndividual(Individual(uniqueText(choose, i), matrix.cellCount(), randomWeight(choose)));
    for (size_t v = 0; v < matrix.cellCount(); ++v) {
      const bool null = choose(5) == 0;
      const std::string text = matrix.variable(v).isCategorical()
                                   ? categories[choose(static_cast<uint32_t>(categories.size()))]
                                   : randomNumber(choose);
      static_cast<void>(matrix.variable(v).addCell(null ? nullptr : text.c_str(), person.cells[v]));
    }
    // The first individuals go one to each group: no group stays empty.
    Assertion& group = *assertions[i < groups ? i : choose(groups)];
    matrix.link(person, group);
    if (!matrix.addMember(group, person)) return nullptr;
  }
  // Categories no individual has still belong to the first categorical
  // variable, as after a taxonomy query.
  for (size_t v = 0; v < matrix.cellCount(); ++v) {
    if (!matrix.variable(v).isCategorical()) continue;
    CellValue unused;
    for (const std::string& category : categories)
      static_cast<void>(matrix.variable(v).addCell(category.c_str(), unused));
    break;
  }
  if (!matrix.finish(SymbolicMatrix::MemberCells::Added)) return nullptr;
  // A dependence between two categorical variables, when there are two.
  std::vector<int32_t> categorical;
  for (size_t v = 0; v < matrix.cellCount(); ++v)
    if (matrix.variable(v).isCategorical()) categorical.push_back(static_cast<int32_t>(v));
  if (categorical.size() >= 2 && choose(2)) {
    RuleGroup group;
    const int32_t applicable[] = {0};
    const int32_t daughters[] = {categorical[1]};
    if (makeRuleGroup(matrix, categorical[0], applicable, daughters, group) && applyRule(matrix, std::move(group)) != 1)
      return nullptr;
  }
  if (variables > 1 && choose(3) == 0) matrix.variable(choose(variables)).active = 0;
  return std::move(hand.matrix);
}

inline size_t longestLine(const std::string& text) {
  size_t longest = 0;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) longest = std::max(longest, line.size());
  return longest;
}

// Writes the matrix in every form and reads each back; returns what went
// wrong, empty when nothing did. A file the library refuses ends the
// process, which the callers count as a failure too.
inline std::string checkWrittenOutput(SymbolicMatrix& matrix, const std::string& metadataPath) {
  constexpr size_t kLineLimit = 3000;
  std::ostringstream kvf;
  if (!IndexAndWriteSymbolicText(kvf, matrix, false)) return "export failed";
  if (longestLine(kvf.str()) > kLineLimit) return "export line too long";

  symlib::SymbolicFile model;
  std::istringstream kvfIn(kvf.str());
  symlib::ParseSymbolicFile(kvfIn, "nom", model);
  std::ostringstream rewritten;
  std::ostringstream xml;
  if (!symlib::WriteSymbolicFileText(model, rewritten) || !symlib::WriteXmlSymbolicFile(model, xml))
    return "library writer failed";
  if (longestLine(rewritten.str()) > kLineLimit || longestLine(xml.str()) > kLineLimit) return "library line too long";
  for (const std::string& text : {rewritten.str(), xml.str()}) {
    symlib::SymbolicFile again;
    std::istringstream in(text);
    symlib::ParseSymbolicFile(in, "nom", again);
  }

  DocumentMetadata metadata;
  metadata.setOrigin(std::string(3000, 'q') + " <&> " + kvf.str().substr(0, 4000), "source <&>");
  if (!metadata.write(metadataPath, matrix)) return "metadata not written";
  std::FILE* file = std::fopen(metadataPath.c_str(), "rb");
  if (!file) return "metadata not written";
  DocumentMetadata reread;
  if (!reread.load(file, metadataPath)) return "metadata refused";

  const std::string project = projectBytes(matrix);
  if (project.empty()) return "save failed";
  const auto reopened = projectFromBytes(project);
  if (!reopened) return "open failed";
  std::ostringstream kvfAgain;
  if (!IndexAndWriteSymbolicText(kvfAgain, *reopened, false)) return "export after open failed";
  if (kvfAgain.str() != kvf.str()) return "export differs after save and open";
  return {};
}

}  // namespace velda::test
