#pragma once

#include <string>

namespace velda {

// Files that must not outlive the process when it ends through exit()
// (the symbolic-file library ends the process on a bad file): each is
// removed at exit unless it was released first. Only the process that
// registered a file removes it, so a forked child never deletes its
// parent's files.
void removeAtExit(const std::string& path);
void releaseAtExit(const std::string& path);

// Ends the process with `status` without destroying anything: the files
// above are removed and the standard streams flushed, then the process ends
// as _Exit ends it. For a program whose last objects take long to free.
[[noreturn]] void exitWithoutDestructors(int status);

}  // namespace velda
