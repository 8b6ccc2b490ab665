#include "common/Progress.h"

#include <cstdarg>

#include "common/Format.h"

namespace velda {

namespace {
ProgressTarget* current = nullptr;
}

void setProgressTarget(ProgressTarget* target) { current = target; }
ProgressTarget* progressTarget() { return current; }

void progressLine1(const char* format, ...) {
  if (!current) return;
  va_list args;
  va_start(args, format);
  std::string text = formatV(kProgressLineCapacity, format, args);
  va_end(args);
  current->setLine1(text);
}

void progressLine2(const char* format, ...) {
  if (!current) return;
  va_list args;
  va_start(args, format);
  std::string text = formatV(kProgressLineCapacity, format, args);
  va_end(args);
  current->setLine2(text);
}

void progressRow(int row) {
  constexpr int kRowStep = 100;
  if (row % kRowStep == 0) progressLine2("Row %d", row);
}

void progressEnableCancel(bool enabled) {
  if (current) current->enableCancel(enabled);
}

bool cancelRequested() { return current && current->cancelRequested(); }

}  // namespace velda
