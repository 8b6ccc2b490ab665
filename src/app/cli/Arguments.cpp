#include "app/cli/Arguments.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>

namespace velda::cli {

std::optional<int32_t> parseInteger(const std::string& text) {
  if (text.empty()) return std::nullopt;
  char* end = nullptr;
  errno = 0;
  const long value = std::strtol(text.c_str(), &end, 10);
  if (errno != 0 || *end != '\0' || value < INT32_MIN || value > INT32_MAX) return std::nullopt;
  return static_cast<int32_t>(value);
}

std::vector<std::string> splitList(const std::string& text) {
  std::vector<std::string> parts;
  size_t start = 0;
  while (start <= text.size()) {
    const size_t comma = std::min(text.find(',', start), text.size());
    if (comma > start) parts.push_back(text.substr(start, comma - start));
    start = comma + 1;
  }
  return parts;
}

std::vector<Word>::iterator Arguments::find(const std::string& name) {
  return std::find_if(words_.begin(), words_.end(), [&name](const Word& word) { return word.bytes == name; });
}

std::string Arguments::text(const Word& word) {
  std::string problem;
  std::optional<std::string> latin1 = charset_.toLatin1(word.bytes, problem);
  if (latin1) return std::move(*latin1);
  if (charsetError_.empty())
    charsetError_ = "argument " + std::to_string(word.position) + " \"" + word.bytes + "\" " + problem;
  return {};
}

bool Arguments::flag(const std::string& name) {
  const auto it = find(name);
  if (it == words_.end()) return false;
  words_.erase(it);
  if (find(name) != words_.end()) fail(name + " given twice");
  return true;
}

std::optional<std::string> Arguments::value(const std::string& name) {
  const auto it = find(name);
  if (it == words_.end()) return std::nullopt;
  if (it + 1 == words_.end()) {
    fail(name + " needs a value");
    words_.erase(it);
    return std::nullopt;
  }
  std::string result = text(*(it + 1));
  words_.erase(it, it + 2);
  if (find(name) != words_.end()) fail(name + " given twice");
  return result;
}

std::optional<int32_t> Arguments::number(const std::string& name) {
  const std::optional<std::string> text = value(name);
  if (!text) return std::nullopt;
  const std::optional<int32_t> result = parseInteger(*text);
  if (!result) fail(name + " needs an integer, not '" + *text + "'");
  return result;
}

bool Arguments::tableOrQuery(std::string& tableName, std::string& query) {
  const std::optional<std::string> table = value("--table");
  const std::optional<std::string> sql = value("--query");
  if (table.has_value() == sql.has_value()) {
    fail("give either --table NAME or --query SQL");
    return false;
  }
  tableName = table.value_or("");
  query = sql.value_or("");
  return true;
}

const std::vector<Word>& Arguments::checkedOperands(size_t min, size_t max) {
  for (const Word& word : words_)
    if (word.bytes.size() > 1 && word.bytes[0] == '-' && word.bytes[1] == '-') {
      fail("unknown option " + text(word));
      words_.clear();
      return words_;
    }
  if (words_.size() < min) fail("missing argument");
  if (words_.size() > max) fail("unexpected argument '" + text(words_[max]) + "'");
  return words_;
}

std::vector<std::string> Arguments::operands(size_t min, size_t max) {
  std::vector<std::string> texts;
  for (const Word& word : checkedOperands(min, max)) texts.push_back(text(word));
  return texts;
}

std::vector<std::string> Arguments::paths(size_t min, size_t max) {
  std::vector<std::string> bytes;
  for (const Word& word : checkedOperands(min, max)) bytes.push_back(word.bytes);
  return bytes;
}

}  // namespace velda::cli
