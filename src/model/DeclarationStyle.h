#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

namespace velda {

// What a variable's entry in the symbolic text file takes from the file's
// writer: the codes of the file's items and the form of its quoted texts.
class DeclarationStyle {
 public:
  virtual ~DeclarationStyle() = default;
  // The code of an item under the letters of a number: variable v is (v, 0),
  // its k-th category (v, k).
  virtual std::string code(uint32_t letters, uint32_t item) const = 0;
  // Writes the text between double quotes, in a form the file's reader takes.
  virtual void writeQuoted(std::ostream& out, std::string_view text) const = 0;
};

}  // namespace velda
