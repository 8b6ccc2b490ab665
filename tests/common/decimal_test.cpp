#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <random>
#include <sstream>
#include <string>

#include "common/Decimal.h"

namespace velda {
namespace {

// The C library's reading of the whole text, bit for bit.
void expectSameAsStrtod(const std::string& text) {
  const double expected = std::strtod(text.c_str(), nullptr);
  const double read = parseDecimal(text.c_str());
  EXPECT_EQ(std::memcmp(&read, &expected, sizeof read), 0) << text << " read " << read << " not " << expected;
}

TEST(Decimal, PlainNumbersReadBitForBitAsTheCLibraryReadsThem) {
  std::istringstream texts(
      "0 -0 0.0 -0.0 007 0.1 0.3 123456789012345 1234567890123456 9007199254740993 0.000000000000001"
      " 0.0000000000000000000000001 99999999999999.9 -2.5 1.7976931348623157 4.35 1. .5 - -. 1.2.3 12a 1e3");
  for (std::string text; texts >> text;) expectSameAsStrtod(text);

  // Random mantissas of 1 to 17 digits with the point anywhere.
  std::mt19937_64 generator(7);
  for (int i = 0; i < 20000; ++i) {
    std::string digits = std::to_string(generator() % 100000000000000000ull);
    const size_t point = generator() % (digits.size() + 1);
    if (point > 0 && point < digits.size()) digits.insert(point, ".");
    expectSameAsStrtod((i % 2 ? "-" : "") + digits);
  }
}

}  // namespace
}  // namespace velda
