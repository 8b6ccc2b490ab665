#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "common/ExitCleanup.h"
#include "support/FileText.h"
#include "support/TempDir.h"

namespace velda {
namespace {

bool exists(const std::string& path) { return access(path.c_str(), F_OK) == 0; }

void touch(const std::string& path) {
  std::FILE* file = std::fopen(path.c_str(), "w");
  ASSERT_NE(file, nullptr) << path;
  std::fclose(file);
}

// Runs `end` in a child process that registered `kept` and `removed` for
// removal at exit and released `kept`, with "pending" written to `out` and
// not flushed; returns the child's exit status.
template <typename End>
int exitStatusOfChild(const std::string& kept, const std::string& removed, const std::string& out, End end) {
  const pid_t pid = fork();
  if (pid == 0) {
    removeAtExit(kept);
    removeAtExit(removed);
    releaseAtExit(kept);
    std::FILE* file = std::fopen(out.c_str(), "w");
    if (file) std::fputs("pending", file);
    end();
  }
  int status = 0;
  waitpid(pid, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Both ways out of the process remove the registered files that were not
// released and write what the streams held; the quick way keeps the status.
// A file registered by the parent is never removed by its child.
TEST(ExitCleanup, BothWaysOutRemoveTheRegisteredFilesAndFlushTheStreams) {
  test::TempDir dir;
  const std::string parents = dir.file("parents.txt");
  touch(parents);
  removeAtExit(parents);
  for (const bool quick : {false, true}) {
    SCOPED_TRACE(quick ? "without destructors" : "exit");
    const std::string kept = dir.file("kept.txt");
    const std::string removed = dir.file("removed.txt");
    const std::string out = dir.file("out.txt");
    touch(kept);
    touch(removed);
    const int status = exitStatusOfChild(kept, removed, out, [quick] {
      if (quick) exitWithoutDestructors(3);
      std::exit(4);
    });
    EXPECT_EQ(status, quick ? 3 : 4);
    EXPECT_TRUE(exists(kept));
    EXPECT_FALSE(exists(removed));
    EXPECT_EQ(test::readFile(out), "pending");
  }
  EXPECT_TRUE(exists(parents));
  releaseAtExit(parents);
}

}  // namespace
}  // namespace velda
