#include "app/cli/LocaleCharset.h"

#include <iconv.h>
#include <langinfo.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <iostream>
#include <streambuf>
#include <vector>

namespace velda::cli {

namespace {

constexpr const char* kLatin1 = "ISO-8859-1";

// One iconv conversion, closed with the object; invalid when the C library
// cannot convert between the two sets.
class Converter {
 public:
  Converter(const char* to, const char* from) : handle_(iconv_open(to, from)) {}
  ~Converter() {
    if (valid()) iconv_close(handle_);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  bool valid() const { return handle_ != reinterpret_cast<iconv_t>(-1); }
  // Converts as much of [in, in + inLeft) as fits; the C library's result.
  size_t convert(char*& in, size_t& inLeft, char*& out, size_t& outLeft) {
    return iconv(handle_, &in, &inLeft, &out, &outLeft);
  }

 private:
  iconv_t handle_;
};

// Latin-1 bytes in the locale's set; one byte that the set cannot hold
// becomes '?'. Latin-1 input has no multi-byte sequences, so any piece of
// a stream converts on its own.
class Latin1Writer {
 public:
  explicit Latin1Writer(const std::string& codeset) : converter_(codeset.c_str(), kLatin1) {}

  std::string convert(const char* data, size_t size) {
    std::string result;
    char* in = const_cast<char*>(data);
    size_t inLeft = size;
    char buffer[4096];
    while (inLeft > 0) {
      char* out = buffer;
      size_t outLeft = sizeof buffer;
      const size_t done = converter_.convert(in, inLeft, out, outLeft);
      result.append(buffer, static_cast<size_t>(out - buffer));
      if (done != static_cast<size_t>(-1) || errno == E2BIG) continue;
      result.push_back('?');
      ++in;
      --inLeft;
    }
    return result;
  }

 private:
  Converter converter_;
};

[[nodiscard]] bool writeAll(int fd, const std::string& bytes) {
  size_t written = 0;
  while (written < bytes.size()) {
    const ssize_t n = ::write(fd, bytes.data() + written, bytes.size() - written);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    written += static_cast<size_t>(n);
  }
  return true;
}

// A C stream that converts what it is given and writes it to a descriptor.
struct ConvertingStream {
  int fd;
  Latin1Writer writer;
};

ssize_t writeConverted(void* cookie, const char* data, size_t size) {
  auto* stream = static_cast<ConvertingStream*>(cookie);
  return writeAll(stream->fd, stream->writer.convert(data, size)) ? static_cast<ssize_t>(size) : -1;
}

// Lives as long as the process, as the stream may be written until exit.
std::FILE* openConvertingStream(ConvertingStream* stream) {
  cookie_io_functions_t functions = {};
  functions.write = writeConverted;
  return fopencookie(stream, "w", functions);
}

// Sends std::cout through a C stream, so the reports written with streams
// are converted like the rest.
class CFileBuffer : public std::streambuf {
 public:
  explicit CFileBuffer(std::FILE* file) : file_(file) {}

 protected:
  int overflow(int c) override { return c == traits_type::eof() ? 0 : std::fputc(c, file_); }
  std::streamsize xsputn(const char* data, std::streamsize size) override {
    return static_cast<std::streamsize>(std::fwrite(data, 1, static_cast<size_t>(size), file_));
  }
  int sync() override { return std::fflush(file_); }

 private:
  std::FILE* file_;
};

}  // namespace

LocaleCharset LocaleCharset::fromEnvironment() {
  std::string codeset = "ANSI_X3.4-1968";
  if (std::setlocale(LC_CTYPE, "")) codeset = nl_langinfo(CODESET);
  std::setlocale(LC_CTYPE, "C");
  return LocaleCharset(codeset);
}

bool LocaleCharset::passesBytes() const { return codeset_ == "ANSI_X3.4-1968" || codeset_ == kLatin1; }

std::optional<std::string> LocaleCharset::toLatin1(const std::string& text, std::string& problem) const {
  if (passesBytes()) return text;
  Converter decoder("WCHAR_T", codeset_.c_str());
  if (!decoder.valid()) return text;
  // Each byte gives at most one character.
  std::vector<wchar_t> characters(text.size() + 1);
  char* in = const_cast<char*>(text.data());
  size_t inLeft = text.size();
  char* out = reinterpret_cast<char*>(characters.data());
  size_t outLeft = characters.size() * sizeof(wchar_t);
  if (decoder.convert(in, inLeft, out, outLeft) == static_cast<size_t>(-1)) {
    problem = "is not valid " + codeset_ + " text";
    return std::nullopt;
  }
  const size_t count = static_cast<size_t>(reinterpret_cast<wchar_t*>(out) - characters.data());
  std::string latin1;
  latin1.reserve(count);
  for (size_t i = 0; i < count; ++i) {
    if (characters[i] < 0 || characters[i] > 0xFF) {
      problem = "has a character outside Latin-1, the character set of VELDA's names and files";
      return std::nullopt;
    }
    latin1.push_back(static_cast<char>(characters[i]));
  }
  return latin1;
}

void convertStandardStreams(const LocaleCharset& charset) {
  if (charset.passesBytes() || !Converter(charset.codeset().c_str(), kLatin1).valid()) return;
  std::fflush(stdout);
  std::fflush(stderr);
  static ConvertingStream* const outStream = new ConvertingStream{STDOUT_FILENO, Latin1Writer(charset.codeset())};
  static ConvertingStream* const errStream = new ConvertingStream{STDERR_FILENO, Latin1Writer(charset.codeset())};
  std::FILE* out = openConvertingStream(outStream);
  std::FILE* err = openConvertingStream(errStream);
  if (!out || !err) return;
  // Same buffering as the streams they replace.
  std::setvbuf(out, nullptr, isatty(STDOUT_FILENO) ? _IOLBF : _IOFBF, BUFSIZ);
  std::setvbuf(err, nullptr, _IONBF, 0);
  stdout = out;
  stderr = err;
  // Never destroyed: std::cout is flushed at exit, after static objects go.
  std::cout.rdbuf(new CFileBuffer(stdout));
}

}  // namespace velda::cli
