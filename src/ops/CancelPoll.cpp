#include "ops/CancelPoll.h"

#include "common/Progress.h"

namespace velda {

bool CancelPoll::requested() {
  if (cancelled_) return true;
  const auto now = std::chrono::steady_clock::now();
  if (asked_ && now - last_ < kInterval) return false;
  asked_ = true;
  last_ = now;
  cancelled_ = cancelRequested();
  return cancelled_;
}

}  // namespace velda
