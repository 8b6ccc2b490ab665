#pragma once

#include <chrono>

namespace velda {

// Asks the progress target whether the user cancelled, at most once every
// 20 ms: each real query lets the user interface run, and the search asks
// before every step, far more often than the window needs. Once a cancel is
// seen it stays seen.
class CancelPoll {
 public:
  static constexpr std::chrono::milliseconds kInterval{20};

  bool requested();

 private:
  std::chrono::steady_clock::time_point last_{};
  bool asked_ = false;
  bool cancelled_ = false;
};

}  // namespace velda
