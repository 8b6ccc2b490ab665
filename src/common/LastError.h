#pragma once

#include <string>

namespace velda {

// The process-wide last-error text: a failing lower layer formats its
// message here (2047 characters at most) and the caller shows it.
constexpr size_t kLastErrorCapacity = 2047;

void setError(const char* format, ...) __attribute__((format(printf, 1, 2)));
const std::string& lastError();
void clearError();

}  // namespace velda
