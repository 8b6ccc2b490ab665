#include "common/Decimal.h"

#include <clocale>
#include <cstdlib>
#include <locale.h>

namespace velda {

double parseDecimal(const char* text) {
  static locale_t cLocale = newlocale(LC_NUMERIC_MASK, "C", static_cast<locale_t>(0));
  return strtod_l(text, nullptr, cLocale);
}

}  // namespace velda
