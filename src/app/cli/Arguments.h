#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "app/cli/LocaleCharset.h"

namespace velda::cli {

// One word of the command line as the system gave it, with its place among
// the arguments (1 for the first after the program's name).
struct Word {
  std::string bytes;
  size_t position = 0;
};

// The words of one command of the chain, taken apart as the command asks
// for its options. Names, queries and titles are converted from the
// locale's character set to the program's Latin-1; file paths stay the
// system's bytes. The first mistake is kept as the usage error.
class Arguments {
 public:
  Arguments(std::vector<Word> words, const LocaleCharset& charset) : words_(std::move(words)), charset_(charset) {}

  // Takes "--name" out of the words; true when it was there.
  bool flag(const std::string& name);
  // Takes "--name VALUE" out of the words.
  std::optional<std::string> value(const std::string& name);
  // Takes "--name N" with N a decimal integer.
  std::optional<int32_t> number(const std::string& name);
  // Exactly one of "--table NAME" and "--query SQL": the table name and the
  // query, one of them empty.
  bool tableOrQuery(std::string& tableName, std::string& query);
  // The words left, which must not be options; count between min and max.
  std::vector<std::string> operands(size_t min, size_t max);
  // As operands, for words that name files: their bytes, unconverted.
  std::vector<std::string> paths(size_t min, size_t max);

  bool failed() const { return !error_.empty() || !charsetError_.empty(); }
  // The usage error: an argument the locale's text cannot carry into
  // Latin-1 first, named by its place on the whole command line.
  const std::string& charsetError() const { return charsetError_; }
  const std::string& error() const { return error_; }
  void fail(const std::string& error) {
    if (error_.empty()) error_ = error;
  }

 private:
  std::vector<Word>::iterator find(const std::string& name);
  std::string text(const Word& word);
  const std::vector<Word>& checkedOperands(size_t min, size_t max);

  std::vector<Word> words_;
  const LocaleCharset& charset_;
  std::string error_;
  std::string charsetError_;
};

// Parses a decimal integer that fills the whole text.
std::optional<int32_t> parseInteger(const std::string& text);
// Splits "a,b,c" at commas (empty parts kept out).
std::vector<std::string> splitList(const std::string& text);

}  // namespace velda::cli
