#include "model/Individual.h"

namespace velda {

bool Individual::belongsTo(const Assertion* assertion) const {
  if (direct == assertion) return direct != nullptr;
  for (const Assertion* a : others)
    if (a == assertion) return true;
  return false;
}

size_t Individual::membershipCount() const {
  if (!direct) return 0;
  size_t n = 1;
  for (auto it = others.begin(); it != others.end(); ++it) ++n;
  return n;
}

}  // namespace velda
