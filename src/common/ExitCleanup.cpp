#include "common/ExitCleanup.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <vector>

namespace velda {

namespace {

struct PendingFile {
  std::string path;
  pid_t owner;
};

std::vector<PendingFile>& pendingFiles() {
  static auto* files = new std::vector<PendingFile>();  // outlives every static destructor
  return *files;
}

void removePendingFiles() {
  const pid_t self = getpid();
  for (const PendingFile& file : pendingFiles()) {
    if (file.owner == self) std::remove(file.path.c_str());
  }
}

}  // namespace

void removeAtExit(const std::string& path) {
  static std::once_flag registered;
  std::call_once(registered, [] { std::atexit(removePendingFiles); });
  pendingFiles().push_back({path, getpid()});
}

void releaseAtExit(const std::string& path) {
  std::vector<PendingFile>& files = pendingFiles();
  files.erase(std::remove_if(files.begin(), files.end(), [&](const PendingFile& f) { return f.path == path; }),
              files.end());
}

void exitWithoutDestructors(int status) {
  removePendingFiles();
  std::fflush(nullptr);
  std::_Exit(status);
}

}  // namespace velda
