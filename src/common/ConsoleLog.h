#pragma once

#include <deque>
#include <functional>
#include <string>

namespace velda {

// The console's list of result lines. At most 4800 lines are kept: adding a
// line to a full console first drops the oldest 1200.
class ConsoleLog {
 public:
  static constexpr size_t kMaxLines = 4800;
  static constexpr size_t kDropBlock = 1200;

  enum class Change { LineAdded, Cleared };
  using Listener = std::function<void(Change)>;

  void print(const char* format, ...) __attribute__((format(printf, 2, 3)));
  void add(std::string line);
  void clear();

  size_t count() const { return lines_.size(); }
  // The line at index, or null outside 0..count-1.
  const std::string* lineAt(long index) const;
  const std::deque<std::string>& lines() const { return lines_; }

  void setListener(Listener listener) { listener_ = std::move(listener); }

 private:
  void notify(Change change) {
    if (listener_) listener_(change);
  }

  std::deque<std::string> lines_;
  Listener listener_;
};

}  // namespace velda
