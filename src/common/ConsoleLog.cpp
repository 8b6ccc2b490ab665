#include "common/ConsoleLog.h"

#include <cstdarg>
#include <limits>

#include "common/Format.h"

namespace velda {

void ConsoleLog::print(const char* format, ...) {
  va_list args;
  va_start(args, format);
  std::string line = formatV(std::numeric_limits<size_t>::max(), format, args);
  va_end(args);
  add(std::move(line));
}

void ConsoleLog::add(std::string line) {
  if (lines_.size() >= kMaxLines) lines_.erase(lines_.begin(), lines_.begin() + kDropBlock);
  lines_.push_back(std::move(line));
  notify(Change::LineAdded);
}

void ConsoleLog::clear() {
  lines_.clear();
  notify(Change::Cleared);
}

const std::string* ConsoleLog::lineAt(long index) const {
  if (index < 0 || static_cast<size_t>(index) >= lines_.size()) return nullptr;
  return &lines_[static_cast<size_t>(index)];
}

}  // namespace velda
