#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "model/DeclarationStyle.h"

namespace velda {

// The codes and quoted texts of the symbolic text file, in the form that the
// file's reader takes back: a double quote inside a text becomes a single
// quote, a control character a space, and a text is cut to its limit.
class SymbolicTextStyle final : public DeclarationStyle {
 public:
  static constexpr size_t kMaxStringLength = 255;

  std::string code(uint32_t letters, uint32_t item) const override;
  void writeQuoted(std::ostream& out, std::string_view text) const override;

  // The text as it may stand between double quotes, cut to maxLength bytes.
  static std::string fileText(std::string_view text, size_t maxLength = kMaxStringLength);
};

}  // namespace velda
