#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/StringHash.h"

namespace velda {

// One category of a categorical variable, or an inner node of its taxonomy.
class Modality {
 public:
  Modality(std::string name, int32_t index) : index(index), name(std::move(name)) {}

  Modality* parent = nullptr;      // taxonomy node above, or none
  Modality* firstChild = nullptr;  // taxonomy children, newest first
  Modality* nextSibling = nullptr;
  int32_t index;  // 0-based, in order of first appearance
  std::string name;
};

// Keys a table of objects by one of their texts (a name or an identifier)
// with the program's string hash.
template <typename T, std::string T::*Field>
struct StringKeyTraits {
  using Key = std::string_view;
  static Key key(const T& value) { return value.*Field; }
  static uint32_t hash(Key key) { return stringHash(key); }
  static bool equal(Key a, Key b) { return a == b; }
};

}  // namespace velda
