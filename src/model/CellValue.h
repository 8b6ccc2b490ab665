#pragma once

#include <cstdint>
#include <string>

namespace velda {

class Modality;

enum CellFlag : uint32_t {
  CELL_MODALITY = 1,  // payload is a modality
  CELL_NUMBER = 2,    // payload is a number
  CELL_NULL = 4,      // the database gave no value
  CELL_NA = 8,        // not applicable: replaced by NA through a dependence
};

// The value of one individual for one variable. Readings test NULL first,
// then NA, then the kind.
//
// Every individual holds one cell per extracted variable, so the cell is
// packed to 12 bytes instead of 16: the payload sits at offset 4. Reading and
// writing the members is fine; only a reference or pointer to the payload
// (double& to number) must not be taken, as it would be misaligned. The
// compiler rejects binding a non-const reference to it.
#pragma pack(push, 4)
struct CellValue {
  uint32_t flags = 0;
  union {
    const Modality* modality;
    double number;
  };

  CellValue() : number(0.0) {}

  bool isNull() const { return flags & CELL_NULL; }
  bool isNA() const { return !isNull() && (flags & CELL_NA); }
  bool isMissing() const { return flags & (CELL_NULL | CELL_NA); }
  bool hasModality() const { return !isMissing() && (flags & CELL_MODALITY); }
  bool hasNumber() const { return !isMissing() && !(flags & CELL_MODALITY) && (flags & CELL_NUMBER); }

  // Same kind of reading and same payload: how repeated rows of one
  // individual are compared.
  bool sameAs(const CellValue& other) const;
};
#pragma pack(pop)
static_assert(sizeof(CellValue) == 12, "a cell is packed to 12 bytes");

// "NULL", "NA", the modality's name, the number with "%.2f", or "".
std::string cellText(const CellValue& cell);

}  // namespace velda
