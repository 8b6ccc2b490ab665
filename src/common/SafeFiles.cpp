#include "common/SafeFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <new>

namespace velda {

namespace {

// Turns a descriptor opened without blocking into a C stream on a regular
// file; closes it and gives null when it is anything else.
std::FILE* regularStream(int descriptor, const char* mode) {
  if (descriptor < 0) return nullptr;
  struct stat status;
  if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
    close(descriptor);
    return nullptr;
  }
  const int flags = fcntl(descriptor, F_GETFL);
  if (flags >= 0) fcntl(descriptor, F_SETFL, flags & ~O_NONBLOCK);
  std::FILE* file = fdopen(descriptor, mode);
  if (!file) close(descriptor);
  return file;
}

template <typename Bytes>
void readToEnd(std::FILE* file, Bytes& bytes) {
  char chunk[1 << 16];
  size_t n;
  while ((n = std::fread(chunk, 1, sizeof chunk, file)) > 0) bytes.insert(bytes.end(), chunk, chunk + n);
}

template <typename Bytes>
[[nodiscard]] bool readRest(std::FILE* file, Bytes& bytes) {
  struct stat status;
  if (fstat(fileno(file), &status) != 0) return false;
  try {
    // A stream that the caller opened on something else (a pipe) is read
    // to its end.
    if (!S_ISREG(status.st_mode)) {
      readToEnd(file, bytes);
      return !std::ferror(file);
    }
    const long position = std::ftell(file);
    if (position < 0) return false;
    const size_t remaining = status.st_size > position ? static_cast<size_t>(status.st_size - position) : 0;
    const size_t start = bytes.size();
    bytes.resize(start + remaining);
    const size_t got = std::fread(bytes.data() + start, 1, remaining, file);
    bytes.resize(start + got);
  } catch (const std::bad_alloc&) {
    return false;
  }
  return !std::ferror(file);
}

}  // namespace

std::FILE* openRegularFile(const std::string& path) {
  return regularStream(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC), "rb");
}

bool readRestOfFile(std::FILE* file, std::vector<unsigned char>& bytes) { return readRest(file, bytes); }
bool readRestOfFile(std::FILE* file, std::string& text) { return readRest(file, text); }

std::FILE* openFixedNameFile(const char* name) {
  const int descriptor = ::open(name, O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0666);
  std::FILE* file = regularStream(descriptor, "w+b");
  if (!file) return nullptr;
  if (ftruncate(fileno(file), 0) != 0) {
    std::fclose(file);
    return nullptr;
  }
  return file;
}

}  // namespace velda
