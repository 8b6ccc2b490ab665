#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velda::symlib {

enum class KeyType { Text, Integer, Real };

struct KeyDescriptor {
  const char* name;
  KeyType type;
};

struct KeyValue {
  bool set = false;
  std::string text;
  long long integer = 0;
  double real = 0;
  bool operator==(const KeyValue&) const = default;
};

// A named block of key = value assignments with its table of allowed keys
// (the FILE and HEADER descriptions). Values are kept in the table's order.
class KeyValueBlock {
 public:
  KeyValueBlock(const char* name, std::span<const KeyDescriptor> keys);

  const char* name() const { return name_; }
  std::span<const KeyDescriptor> keys() const { return keys_; }
  // Position of an allowed key, or -1.
  int find(std::string_view key) const;

  const KeyValue& value(int key) const { return values_[key]; }
  KeyValue& value(int key) { return values_[key]; }
  const std::string& text(int key) const { return values_[key].text; }
  // The integer of an integer key, the real of a real key, 0 when unset.
  double number(int key) const;
  void clear();

  bool operator==(const KeyValueBlock& other) const { return values_ == other.values_; }

 private:
  const char* name_;
  std::span<const KeyDescriptor> keys_;
  std::vector<KeyValue> values_;
};

// Keys of the FILE description, in the library's order.
enum FileKey { kProcedureName, kVersion, kCreateDate, kFiliereName, kFilierePath, kArray, kBase };

// Keys of the HEADER description, in the library's order.
enum HeaderKey {
  kTitle,
  kSubTitle,
  kIndivNb,
  kWeightIndiv,
  kVarNb,
  kRulesNb,
  kNbVarSet,
  kNbIndivSet,
  kNbVarNom,
  kNbVarCont,
  kNbVarText,
  kNbVarContSymb,
  kNbVarNomSymb,
  kNbVarNomMod,
  kNbNa,
  kNbNull,
  kNbHierarchies,
  kNbNu
};

KeyValueBlock MakeFileBlock();
KeyValueBlock MakeHeaderBlock();

}  // namespace velda::symlib
