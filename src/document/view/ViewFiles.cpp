#include "document/view/ViewFiles.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "common/ExitCleanup.h"

namespace velda {

std::string createTemporaryFile(const char* prefix, const char* suffix) {
  const char* dir = std::getenv("TMPDIR");
  if (!dir || !*dir) dir = ".";
  std::string pattern = std::string(dir) + "/" + prefix + "XXXXXX" + suffix;
  std::vector<char> buffer(pattern.begin(), pattern.end());
  buffer.push_back('\0');
  const int fd = mkstemps(buffer.data(), static_cast<int>(std::strlen(suffix)));
  if (fd < 0) return {};
  close(fd);
  return std::string(buffer.data());
}

ViewFiles::~ViewFiles() {
  for (int kind = 0; kind < KindCount; ++kind) forget(static_cast<Kind>(kind));
}

const char* ViewFiles::prefixOf(Kind kind) {
  static const char* const kPrefixes[KindCount] = {"dbind", "dbgrp", "dbred"};
  return kPrefixes[kind];
}

std::string ViewFiles::nameFor(Kind kind) {
  if (!names_[kind].empty()) return names_[kind];
  names_[kind] = createTemporaryFile(prefixOf(kind), ".txt");
  if (!names_[kind].empty()) removeAtExit(names_[kind]);
  return names_[kind];
}

void ViewFiles::forget(Kind kind) {
  if (names_[kind].empty()) return;
  std::remove(names_[kind].c_str());
  releaseAtExit(names_[kind]);
  names_[kind].clear();
}

}  // namespace velda
