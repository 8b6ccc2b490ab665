#pragma once

#include <string>

namespace velda {

// A division node's number: the root is 1 and the children of n are 2n and
// 2n + 1, so a class 99 cuts deep is numbered up to 2^100 - 1.
using NodeNumber = unsigned __int128;

// The number in decimal, without leading zeros.
std::string decimalText(NodeNumber number);

}  // namespace velda
