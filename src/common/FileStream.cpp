#include "common/FileStream.h"

namespace velda {

namespace {
constexpr size_t kBufferSize = 1 << 16;
}

FileStreamBuffer::FileStreamBuffer(std::FILE* file) : file_(file), buffer_(kBufferSize) {
  setp(buffer_.data(), buffer_.data() + buffer_.size());
}

// Writers flush and check the stream before they let it go: what is left
// here has no one to report a failure to.
FileStreamBuffer::~FileStreamBuffer() { static_cast<void>(drain()); }

bool FileStreamBuffer::drain() {
  const size_t pending = static_cast<size_t>(pptr() - pbase());
  if (pending == 0) return true;
  const bool written = file_ && std::fwrite(pbase(), 1, pending, file_) == pending;
  setp(buffer_.data(), buffer_.data() + buffer_.size());
  return written;
}

FileStreamBuffer::int_type FileStreamBuffer::overflow(int_type c) {
  if (!drain()) return traits_type::eof();
  if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
  *pptr() = traits_type::to_char_type(c);
  pbump(1);
  return c;
}

int FileStreamBuffer::sync() {
  if (!drain()) return -1;
  return file_ && std::fflush(file_) == 0 ? 0 : -1;
}

}  // namespace velda
