#include "common/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>

#include "common/ExitCleanup.h"
#include "common/FileStream.h"
#include "common/LastError.h"
#include "common/PathText.h"

namespace velda {

namespace {

constexpr int kMaxLinks = 40;

std::string folderOf(const std::string& path) {
  const size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  if (slash == 0) return "/";
  return path.substr(0, slash);
}

// The file that a path finally names, following symbolic links (also a
// dangling one, whose target is then created). Empty when the links loop.
std::string followLinks(std::string path) {
  for (int hop = 0; hop < kMaxLinks; ++hop) {
    struct stat status;
    if (lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return path;
    char link[PATH_MAX];
    const ssize_t length = readlink(path.c_str(), link, sizeof link - 1);
    if (length <= 0) return {};
    const std::string destination(link, static_cast<size_t>(length));
    path = destination.front() == '/' ? destination : folderOf(path) + "/" + destination;
  }
  return {};
}

mode_t newFileMode() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

}  // namespace

AtomicFile::AtomicFile() = default;

AtomicFile::~AtomicFile() { discard(); }

bool AtomicFile::open(const std::string& path) {
  discard();
  path_ = path;
  target_ = followLinks(path);
  struct stat status;
  existed_ = !target_.empty() && stat(target_.c_str(), &status) == 0;
  const bool refused =
      target_.empty() ||
      (existed_ && (!S_ISREG(status.st_mode) || (status.st_mode & 0222) == 0 || access(target_.c_str(), W_OK) != 0));
  if (refused) {
    setError("Can not open file %s", pathForDisplay(path).c_str());
    return false;
  }
  if (existed_) {
    mode_ = status.st_mode & 07777;
    owner_ = status.st_uid;
    group_ = status.st_gid;
  }
  temporary_ = target_ + ".XXXXXX";
  const int descriptor = mkstemp(temporary_.data());
  if (descriptor < 0) {
    temporary_.clear();
    setError("Can not open file %s", pathForDisplay(path).c_str());
    return false;
  }
  removeAtExit(temporary_);
  file_ = fdopen(descriptor, "wb");
  if (!file_) {
    close(descriptor);
    discard();
    setError("Can not open file %s", pathForDisplay(path).c_str());
    return false;
  }
  return true;
}

std::ostream& AtomicFile::stream() {
  if (!stream_) stream_ = std::make_unique<FileOutputStream>(file_);
  return *stream_;
}

void AtomicFile::copyOwnership(int descriptor) const {
  if (!existed_) {
    fchmod(descriptor, newFileMode());
    return;
  }
  // The owner can only be given back by a privileged process; the group
  // where the user belongs to it. The permission bits are set after, since
  // a change of owner may clear the set-id bits.
  if (fchown(descriptor, owner_, group_) != 0) {
    [[maybe_unused]] const int groupOnly = fchown(descriptor, static_cast<uid_t>(-1), group_);
  }
  fchmod(descriptor, mode_);
}

bool AtomicFile::commit() {
  if (!file_) {
    setError("Can not write file %s", pathForDisplay(path_).c_str());
    return false;
  }
  // Everything that allocates comes before the rename, so that once the
  // file is in place nothing can fail.
  const std::string folderPath = folderOf(target_);
  bool written = !stream_ || static_cast<bool>(stream_->flush());
  written = std::fflush(file_) == 0 && !std::ferror(file_) && written;
  const int descriptor = fileno(file_);
  if (written) copyOwnership(descriptor);
  written = written && fsync(descriptor) == 0;
  stream_.reset();
  written = std::fclose(file_) == 0 && written;
  file_ = nullptr;
  written = written && std::rename(temporary_.c_str(), target_.c_str()) == 0;
  if (!written) {
    discard();
    setError("Can not write file %s", pathForDisplay(path_).c_str());
    return false;
  }
  releaseAtExit(temporary_);
  temporary_.clear();
  const int folder = ::open(folderPath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder >= 0) {
    fsync(folder);
    close(folder);
  }
  return true;
}

void AtomicFile::discard() {
  stream_.reset();
  if (file_) std::fclose(file_);
  file_ = nullptr;
  if (temporary_.empty()) return;
  unlink(temporary_.c_str());
  releaseAtExit(temporary_);
  temporary_.clear();
}

}  // namespace velda
