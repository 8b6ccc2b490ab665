#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "formats/library/Diagnostics.h"
#include "formats/library/SymbolicFile.h"

namespace velda::symlib {

// A value given to a FILE or HEADER key. Text read from XML is converted
// to the key's type.
struct KeyInput {
  enum class Kind { Text, Integer, Real, XmlText };
  Kind kind = Kind::Text;
  std::string text;
  long long integer = 0;
  double real = 0;
};

// The semantic actions of the grammar: they build the model and apply
// every check, reporting through the diagnostics. Operations that return
// false ask the parser to stop.
class SymbolicBuilder {
 public:
  SymbolicBuilder(SymbolicFile& model, Diagnostics& diagnostics) : model_(model), diag_(diagnostics) {}

  void declare(SymBlock block) { model_.declared[static_cast<int>(block)] = true; }
  // Starts a block. Its items are taken only when it is the first of its
  // name and follows the blocks it needs. A block that the contents do
  // not name ends the process.
  void beginBlock(SymBlock block);
  // Starts a block whose element holds no item: when the contents do not
  // name it, the block is simply absent and takes nothing.
  void beginEmptyBlock(SymBlock block);

  void assignKey(std::string_view key, const KeyInput& value);
  void addIndividual(long long number, std::string code, std::string label);
  void addVariable(SymVariable&& variable);
  [[nodiscard]] bool addHierarchy(SymHierarchy&& hierarchy);
  [[nodiscard]] bool addRule(SymRule&& rule);
  void refuseVariablesSet();
  void refuseKind(std::string_view word);

  [[nodiscard]] bool beginMatrix();
  void beginRow();
  void addCell(SymValue&& value);
  void endRow();

  void beginTriangle(SymBlock block);
  void addTriangleRow(std::vector<double>&& row);
  void endTriangle();

 private:
  [[nodiscard]] bool checkNoErrorBefore(const char* what);
  // An integer key as read (the scanner saturates huge numbers); 0 when unset.
  long long headerCount(HeaderKey key) const { return model_.header.value(key).integer; }
  void checkValueKind(const SymVariable& variable, SymValue& value);
  void markOldFashionNA(SymValue& value);
  void checkCategory(const SymVariable& variable, SymValue& value);
  void checkCategoryList(const SymVariable& variable, SymValue& value);
  void checkHierarchyLinks(const SymVariable& variable, SymHierarchy& hierarchy);

  SymbolicFile& model_;
  Diagnostics& diag_;
  SymBlock current_ = SymBlock::Files;
  bool accepting_ = false;
  bool rowAccepted_ = false;
  bool rowTooWide_ = false;
  SymTriangle* triangle_ = nullptr;
};

}  // namespace velda::symlib
