#pragma once

namespace velda {

// Reads the leading decimal number of a text the way the C library does
// (leading blanks skipped, the rest ignored, 0 when there is none), always
// with '.' as the decimal point whatever the user's locale.
double parseDecimal(const char* text);

}  // namespace velda
