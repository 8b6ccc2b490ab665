#pragma once

#include <string>

namespace velda {

// Where a long operation reports: the GUI's progress dialog, the
// command-line program's terminal lines, or a test's recorder.
class ProgressTarget {
 public:
  virtual ~ProgressTarget() = default;
  virtual void setLine1(const std::string& text) = 0;
  virtual void setLine2(const std::string& text) = 0;
  virtual void enableCancel(bool enabled) = 0;
  // Gives the user interface a chance to run, then says whether the user
  // asked to cancel.
  virtual bool cancelRequested() = 0;
};

constexpr size_t kProgressLineCapacity = 1023;

// The process-wide target; null when no long operation runs. The calls
// below do nothing (and report no cancel) without a target.
void setProgressTarget(ProgressTarget* target);
ProgressTarget* progressTarget();

void progressLine1(const char* format, ...) __attribute__((format(printf, 1, 2)));
void progressLine2(const char* format, ...) __attribute__((format(printf, 1, 2)));
// "Row %d" on the second line for every hundredth row: how the commands
// that read rows or walk individuals show where they are.
void progressRow(int row);
void progressEnableCancel(bool enabled);
bool cancelRequested();

// Installs a target for the lifetime of a scope and restores the previous one.
class ScopedProgressTarget {
 public:
  explicit ScopedProgressTarget(ProgressTarget* target) : previous_(progressTarget()) { setProgressTarget(target); }
  ~ScopedProgressTarget() { setProgressTarget(previous_); }
  ScopedProgressTarget(const ScopedProgressTarget&) = delete;
  ScopedProgressTarget& operator=(const ScopedProgressTarget&) = delete;

 private:
  ProgressTarget* previous_;
};

}  // namespace velda
