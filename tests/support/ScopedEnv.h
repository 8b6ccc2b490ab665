#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace velda::test {

// Sets an environment variable for the object's lifetime; the previous
// value, or its absence, comes back afterwards.
class ScopedEnv {
 public:
  ScopedEnv(const char* name, const std::string& value) : name_(name) {
    if (const char* old = std::getenv(name)) previous_ = old;
    setenv(name, value.c_str(), 1);
  }
  ~ScopedEnv() { previous_ ? setenv(name_, previous_->c_str(), 1) : unsetenv(name_); }
  ScopedEnv(const ScopedEnv&) = delete;
  ScopedEnv& operator=(const ScopedEnv&) = delete;

 private:
  const char* name_;
  std::optional<std::string> previous_;
};

}  // namespace velda::test
