#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velda::cli {

// The words of one command of the chain, taken apart as the command asks
// for its options. The first mistake is kept as the usage error.
class Arguments {
 public:
  explicit Arguments(std::vector<std::string> words) : words_(std::move(words)) {}

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

  bool failed() const { return !error_.empty(); }
  const std::string& error() const { return error_; }
  void fail(const std::string& error) {
    if (error_.empty()) error_ = error;
  }

 private:
  std::vector<std::string> words_;
  std::string error_;
};

// Parses a decimal integer that fills the whole text.
std::optional<int32_t> parseInteger(const std::string& text);
// Splits "a,b,c" at commas (empty parts kept out).
std::vector<std::string> splitList(const std::string& text);

}  // namespace velda::cli
