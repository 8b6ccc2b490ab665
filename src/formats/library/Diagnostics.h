#pragma once

#include <string>

namespace velda::symlib {

// The counters of one parse and the way its messages reach the log.
class Diagnostics {
 public:
  void syntaxError(const std::string& message);
  void semanticError(const std::string& message);
  // A difference found by the coherence check, after the semantic pass.
  void coherenceError(const std::string& message);
  void warning(const std::string& message);
  // A plain log line that counts nothing.
  void note(const std::string& message);

  int syntaxErrors() const { return syntaxErrors_; }
  int semanticErrors() const { return semanticErrors_; }
  int coherenceErrors() const { return coherenceErrors_; }
  int errors() const { return syntaxErrors_ + semanticErrors_ + coherenceErrors_; }
  int warnings() const { return warnings_; }

 private:
  int syntaxErrors_ = 0;
  int semanticErrors_ = 0;
  int coherenceErrors_ = 0;
  int warnings_ = 0;
};

}  // namespace velda::symlib
