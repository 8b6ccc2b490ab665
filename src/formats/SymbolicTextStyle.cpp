#include "formats/SymbolicTextStyle.h"

#include <ostream>

#include "formats/Codes.h"

namespace velda {

std::string SymbolicTextStyle::code(uint32_t letters, uint32_t item) const { return itemCode(letters, item); }

void SymbolicTextStyle::writeQuoted(std::ostream& out, std::string_view text) const {
  out << '"' << fileText(text) << '"';
}

std::string SymbolicTextStyle::fileText(std::string_view text, size_t maxLength) {
  std::string result(text.substr(0, maxLength));
  for (char& c : result) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"')
      c = '\'';
    else if (byte < 0x20 || byte == 0x7f)
      c = ' ';
  }
  return result;
}

}  // namespace velda
