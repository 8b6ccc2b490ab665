#include "app/cli/HugePageHeap.h"

#include <unistd.h>

#include <cstdlib>
#include <string>

namespace velda::cli {

namespace {

constexpr const char* kTunables = "GLIBC_TUNABLES";
constexpr const char* kHugePages = "glibc.malloc.hugetlb";

}  // namespace

void restartWithHugePageHeap(char** argv) {
#ifndef __SANITIZE_ADDRESS__
  const char* current = std::getenv(kTunables);
  std::string tunables = current ? current : "";
  // Present, whatever its value: already restarted, or chosen by the user.
  if (tunables.find(kHugePages) != std::string::npos) return;
  tunables += (tunables.empty() ? "" : ":") + std::string(kHugePages) + "=1";
  if (setenv(kTunables, tunables.c_str(), 1) != 0) return;
  execv("/proc/self/exe", argv);
  // Not restarted: the setting would only reach the programs started later.
  if (current)
    setenv(kTunables, current, 1);
  else
    unsetenv(kTunables);
#else
  (void)argv;
#endif
}

}  // namespace velda::cli
