#include "document/view/ViewerLauncher.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace velda {

namespace {

// Runs the program in a grandchild, so that it is adopted and reaped by
// the system; a pipe closed on exec tells whether the exec worked.
bool startDetached(const std::string& program, const std::string& path) {
  int report[2];
  if (pipe2(report, O_CLOEXEC) != 0) return false;
  const pid_t child = fork();
  if (child < 0) {
    close(report[0]);
    close(report[1]);
    return false;
  }
  if (child == 0) {
    const pid_t viewer = fork();
    if (viewer == 0) {
      setsid();
      const char* argv[] = {program.c_str(), path.c_str(), nullptr};
      execvp(argv[0], const_cast<char* const*>(argv));
      const int failure = errno;
      (void)!write(report[1], &failure, sizeof failure);
      _exit(127);
    }
    _exit(viewer < 0 ? 1 : 0);
  }
  close(report[1]);
  int status = 0;
  waitpid(child, &status, 0);
  int failure = 0;
  ssize_t got;
  do {
    got = read(report[0], &failure, sizeof failure);
  } while (got < 0 && errno == EINTR);
  close(report[0]);
  return got == 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

// Only programs that open a window of their own are listed: one that needs
// a terminal (vi behind sensible-editor, w3m behind sensible-browser) would
// start without one, show nothing, and still count as started.
std::vector<std::string> viewerPrograms(ViewerKind kind) {
  const char* chosen = std::getenv("VELDA_VIEWER");
  if (chosen && *chosen) return {chosen};
  const std::vector<std::string> textViewers = {"gedit", "gnome-text-editor", "kate",   "kwrite", "mousepad", "pluma",
                                                "xed",   "featherpad",        "leafpad"};
  std::vector<std::string> programs = {"xdg-open"};
  // XML goes to a file browser first and falls back to the text viewers.
  if (kind == ViewerKind::Xml)
    programs.insert(programs.end(), {"nautilus", "thunar", "dolphin", "pcmanfm", "caja", "nemo", "firefox"});
  programs.insert(programs.end(), textViewers.begin(), textViewers.end());
  return programs;
}

bool launchViewer(const std::string& path, ViewerKind kind) {
  for (const std::string& program : viewerPrograms(kind))
    if (startDetached(program, path)) return true;
  return false;
}

}  // namespace velda
