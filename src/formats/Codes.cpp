#include "formats/Codes.h"

namespace velda {

namespace {

constexpr char kSymbols[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
constexpr uint32_t kFirstRange = 620;
constexpr uint32_t kSymbolCount = 62;
constexpr uint32_t kSecondDigits = 52;

}  // namespace

std::string letterPair(uint32_t x) { return {static_cast<char>('A' + (x / 26) % 26), static_cast<char>('A' + x % 26)}; }

std::string codeSuffix(uint32_t x) {
  if (x < kFirstRange) return {kSymbols[x / 10], kSymbols[x % 10]};
  const uint32_t y = x - kFirstRange;
  return {kSymbols[(y / kSecondDigits) % kSymbolCount], kSymbols[y % kSecondDigits]};
}

std::string itemCode(uint32_t letters, uint32_t item) { return letterPair(letters) + codeSuffix(item); }

}  // namespace velda
