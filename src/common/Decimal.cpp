#include "common/Decimal.h"

#include <locale.h>
#include <charconv>
#include <clocale>
#include <cstdlib>
#include <cstring>

namespace velda {

double parseDecimal(const char* text) {
  // Plain numbers, by far the most common database text, take the fast
  // path; anything else (blanks, a sign, hexadecimal, trailing text) goes
  // through the C library. Both round correctly, so the result is the same.
  const char* end = text + std::strlen(text);
  double value = 0.0;
  const auto [stop, error] = std::from_chars(text, end, value);
  if (error == std::errc() && stop == end && stop != text) return value;
  static locale_t cLocale = newlocale(LC_NUMERIC_MASK, "C", static_cast<locale_t>(0));
  return strtod_l(text, nullptr, cLocale);
}

}  // namespace velda
