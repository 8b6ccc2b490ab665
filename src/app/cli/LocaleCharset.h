#pragma once

#include <optional>
#include <string>

namespace velda::cli {

// The character set of the user's locale, in which velda-cli reads its
// arguments and writes what it prints. The program itself works in
// Latin-1: arguments are converted to it (file names excepted, which stay
// the system's bytes), output back from it.
class LocaleCharset {
 public:
  // The character set that LC_ALL, LC_CTYPE or LANG select. The program's
  // own locale stays "C", so that nothing else changes behaviour with it.
  static LocaleCharset fromEnvironment();
  explicit LocaleCharset(std::string codeset) : codeset_(std::move(codeset)) {}

  const std::string& codeset() const { return codeset_; }
  // True in the C (POSIX) locale and in Latin-1 locales: bytes pass
  // unchanged both ways, as scripts that compare bytes expect.
  bool passesBytes() const;

  // The Latin-1 form of a text of the locale; without a value when the text
  // is not valid in the locale's character set (`problem` says so) or holds
  // a character that Latin-1 cannot.
  std::optional<std::string> toLatin1(const std::string& text, std::string& problem) const;

 private:
  std::string codeset_;
};

// From now on, everything written to standard output and standard error
// (console lines, messages, tables, the symbolic-file library's lines) is
// converted from Latin-1 to the locale's character set; a character that
// the set cannot hold is written as '?'.
void convertStandardStreams(const LocaleCharset& charset);

}  // namespace velda::cli
