#include "ops/reduction/NodeNumber.h"

#include <algorithm>

namespace velda {

std::string decimalText(NodeNumber number) {
  std::string digits;
  do {
    digits.push_back(static_cast<char>('0' + static_cast<int>(number % 10)));
    number /= 10;
  } while (number != 0);
  std::reverse(digits.begin(), digits.end());
  return digits;
}

}  // namespace velda
