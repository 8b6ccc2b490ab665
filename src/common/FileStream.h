#pragma once

#include <cstdio>
#include <ostream>
#include <streambuf>
#include <vector>

namespace velda {

// An output stream that writes into a C stream, so that writers built on
// std::ostream and writers built on FILE* can fill the same file. A write
// that does not complete sets the stream's badbit.
class FileStreamBuffer final : public std::streambuf {
 public:
  explicit FileStreamBuffer(std::FILE* file);
  ~FileStreamBuffer() override;
  FileStreamBuffer(const FileStreamBuffer&) = delete;
  FileStreamBuffer& operator=(const FileStreamBuffer&) = delete;

 protected:
  int_type overflow(int_type c) override;
  int sync() override;

 private:
  [[nodiscard]] bool drain();

  std::FILE* file_;
  std::vector<char> buffer_;
};

class FileOutputStream final : public std::ostream {
 public:
  explicit FileOutputStream(std::FILE* file) : std::ostream(nullptr), buffer_(file) { rdbuf(&buffer_); }

 private:
  FileStreamBuffer buffer_;
};

}  // namespace velda
