#pragma once

#include <sys/types.h>

#include <cstdio>
#include <memory>
#include <ostream>
#include <string>

namespace velda {

class FileOutputStream;

// Replaces a file only once its new content is complete. The content goes
// to a new file in the destination's folder, which commit() renames over
// the destination; until then, and whenever anything fails, the previous
// file stays byte for byte as it was and the new file is removed (also
// when the process ends through exit()).
//
// A destination that is a symbolic link is followed: its target is
// replaced and the link stays. An existing destination keeps its
// permission bits and, where the process may, its owner and group.
//
//   AtomicFile file;
//   if (!file.open(path)) ... "Can not open file %s" is in the last-error text
//   write into file.stream() or file.file()
//   if (!file.commit()) ... "Can not write file %s" is in the last-error text
class AtomicFile {
 public:
  AtomicFile();
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  // Creates the new file beside path. False, with "Can not open file %s"
  // in the last-error text, when the destination is not a regular file,
  // is read-only or the user cannot write it, or when the folder takes no
  // new file.
  [[nodiscard]] bool open(const std::string& path);

  // The new content, as a C stream or as an output stream (both may be
  // used; the output stream is flushed before the C stream is).
  std::FILE* file() { return file_; }
  std::ostream& stream();

  // Writes everything out, makes it durable and renames it over the
  // destination. False, with "Can not write file %s" in the last-error
  // text and the previous file unchanged, when any of it fails (a full
  // disk, a write error).
  [[nodiscard]] bool commit();

  // Drops the new content; the destination stays as it was.
  void discard();

  // The file that commit() replaces (the link's target for a link).
  const std::string& target() const { return target_; }

 private:
  void copyOwnership(int descriptor) const;

  std::string path_;
  std::string target_;
  std::string temporary_;
  std::FILE* file_ = nullptr;
  std::unique_ptr<FileOutputStream> stream_;
  bool existed_ = false;
  mode_t mode_ = 0;
  uid_t owner_ = 0;
  gid_t group_ = 0;
};

}  // namespace velda
