#include "common/Decimal.h"

#include <locale.h>
#include <charconv>
#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace velda {

namespace {

// Every power of ten up to 1e22 is exact in a double.
constexpr double kExactPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                        1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
// Fifteen decimal digits stay below 2^53: the integer is exact in a double.
constexpr int kExactDigits = 15;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Reads "[-]digits[.digits]" of at most 15 digits as the integer of its
// digits divided by a power of ten. Both are exact doubles, so the one
// rounding of the division gives the correctly rounded number, the same as
// the general parsers. False, with nothing read, for any other text.
bool parseShortDecimal(const char* text, double& value) {
  const bool negative = *text == '-';
  const char* at = text + (negative ? 1 : 0);
  uint64_t digits = 0;
  int count = 0;
  int fraction = 0;
  for (; isDigit(*at); ++at, ++count) digits = digits * 10 + static_cast<uint64_t>(*at - '0');
  if (count == 0) return false;
  if (*at == '.') {
    for (++at; isDigit(*at); ++at, ++count, ++fraction) digits = digits * 10 + static_cast<uint64_t>(*at - '0');
    if (fraction == 0) return false;
  }
  if (*at != '\0' || count > kExactDigits) return false;
  const double magnitude = static_cast<double>(digits) / kExactPowersOfTen[fraction];
  value = negative ? -magnitude : magnitude;
  return true;
}

}  // namespace

double parseDecimal(const char* text) {
  // Plain numbers, by far the most common database text, take the fast
  // paths; anything else (blanks, a sign, hexadecimal, trailing text) goes
  // through the C library. All round correctly, so the result is the same.
  double value = 0.0;
  if (parseShortDecimal(text, value)) return value;
  const char* end = text + std::strlen(text);
  const auto [stop, error] = std::from_chars(text, end, value);
  if (error == std::errc() && stop == end && stop != text) return value;
  static locale_t cLocale = newlocale(LC_NUMERIC_MASK, "C", static_cast<locale_t>(0));
  return strtod_l(text, nullptr, cLocale);
}

}  // namespace velda
