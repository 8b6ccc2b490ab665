// The installed tree: what make install puts in place, that it works from
// there, and that make uninstall takes away exactly that.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "app/CliRun.h"
#include "support/TempDir.h"

namespace velda::test {
namespace {

namespace fs = std::filesystem;

// Runs a shell command line; the output holds standard output and
// standard error together.
CliResult run(const std::string& command) {
  CliResult result;
  std::FILE* pipe = popen((command + " 2>&1").c_str(), "r");
  if (!pipe) return result;
  char buffer[4096];
  for (size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) result.out.append(buffer, n);
  const int status = pclose(pipe);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return result;
}

std::string quoted(const std::string& path) { return "'" + path + "'"; }

std::string buildDir() { return std::getenv("VELDA_BINARY_DIR"); }
std::string sourceDir() { return std::getenv("VELDA_SOURCE_DIR"); }

std::vector<std::string> regularFilesUnder(const std::string& root) {
  std::vector<std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(root))
    if (!entry.is_directory()) files.push_back(fs::relative(entry.path(), root).string());
  std::sort(files.begin(), files.end());
  return files;
}

TEST(Install, TheInstalledTreeWorksAndUninstallTakesExactlyItAway) {
  TempDir stage;
  const std::string root = fs::canonical(stage.path()).string();
  // Something of the system's own that the installation must leave alone.
  fs::create_directories(root + "/usr/local/bin");
  std::ofstream(root + "/usr/local/bin/other-program") << "#!/bin/sh\n";

  CliResult step = run("DESTDIR=" + quoted(root) + " cmake --install " + quoted(buildDir()));
  ASSERT_EQ(step.status, 0) << step.out;

  const std::string prefix = root + "/usr/local";
  std::vector<std::string> expected = {
      "usr/local/bin/other-program",
      "usr/local/bin/velda",
      "usr/local/bin/velda-cli",
      "usr/local/share/applications/velda.desktop",
      "usr/local/share/icons/hicolor/scalable/apps/velda.svg",
      "usr/local/share/man/man1/velda-cli.1",
      "usr/local/share/man/man1/velda.1",
      "usr/local/share/mime/packages/velda.xml",
  };
  // The manual goes whole, page for page; the map of the code stays in the sources.
  for (const auto& page : fs::directory_iterator(sourceDir() + "/docs"))
    if (page.path().filename() != "DEVELOPING.md")
      expected.push_back("usr/local/share/doc/velda/" + page.path().filename().string());
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(regularFilesUnder(root), expected);

  // The programs run from there, and Help reads the manual installed with
  // them; from the build tree it reads the source tree's.
  step = run(quoted(prefix + "/bin/velda-cli") + " --help");
  EXPECT_EQ(step.status, 0) << step.out;
  EXPECT_EQ(step.out.rfind("usage: velda-cli ", 0), 0u) << step.out;
  step = run("QT_QPA_PLATFORM=offscreen " + quoted(prefix + "/bin/velda") + " --help");
  EXPECT_EQ(step.status, 0) << step.out;
  EXPECT_NE(step.out.find("The manual: " + prefix + "/share/doc/velda/index.html\n"), std::string::npos) << step.out;
  step = run("QT_QPA_PLATFORM=offscreen " + quoted(buildDir() + "/bin/velda") + " --help");
  EXPECT_NE(step.out.find("The manual: " + sourceDir() + "/docs/index.html\n"), std::string::npos) << step.out;
  step = run("QT_QPA_PLATFORM=offscreen " + quoted(prefix + "/bin/velda") + " one.gaj two.gaj");
  EXPECT_EQ(step.status, 2) << step.out;

  // Both man pages render without a warning and name the installed manual.
  for (const std::string page : {"velda", "velda-cli"}) {
    step = run("MANWIDTH=80 man --warnings -l " + quoted(prefix + "/share/man/man1/" + page + ".1"));
    EXPECT_EQ(step.status, 0) << step.out;
    EXPECT_EQ(step.out.find("warning"), std::string::npos) << step.out;
    EXPECT_NE(step.out.find("NAME\n       " + page + " - "), std::string::npos) << step.out;
    EXPECT_NE(step.out.find("/usr/local/share/doc/velda/index.html"), std::string::npos) << step.out;
  }

  // The desktop entry is valid and opens project files, which the shared
  // MIME database recognises by name and by content.
  const std::string desktop = prefix + "/share/applications/velda.desktop";
  step = run("desktop-file-validate " + quoted(desktop));
  EXPECT_EQ(step.status, 0) << step.out;
  EXPECT_EQ(step.out, "");
  const std::string entry = readFile(desktop);
  EXPECT_NE(entry.find("\nExec=velda %f\n"), std::string::npos);
  EXPECT_NE(entry.find("\nMimeType=application/x-velda-project;\n"), std::string::npos);
  TempDir mime;
  fs::create_directories(mime.path() + "/packages");
  fs::copy_file(prefix + "/share/mime/packages/velda.xml", mime.path() + "/packages/velda.xml");
  step = run("update-mime-database " + quoted(mime.path()));
  ASSERT_EQ(step.status, 0) << step.out;
  EXPECT_NE(readFile(mime.path() + "/globs2").find(":application/x-velda-project:*.gaj\n"), std::string::npos);
  const std::string magic = "[60:application/x-velda-project]\n>0=" + std::string(1, '\0') + "\x07$KORVA$\n";
  EXPECT_NE(readFile(mime.path() + "/magic").find(magic), std::string::npos);

  step = run("DESTDIR=" + quoted(root) + " cmake -P " + quoted(buildDir() + "/velda_uninstall.cmake"));
  ASSERT_EQ(step.status, 0) << step.out;
  EXPECT_EQ(regularFilesUnder(root), std::vector<std::string>{"usr/local/bin/other-program"});
  EXPECT_FALSE(fs::exists(prefix + "/share/doc/velda"));
  EXPECT_TRUE(fs::exists(prefix + "/share/man/man1"));
}

// The script starts from a fresh machine of any current Debian release: a
// name with a release's version in it (libfoo-14-dev) exists on one only.
TEST(Install, TheDependencyScriptNamesUnversionedDebianPackages) {
  const std::string script = readFile(sourceDir() + "/scripts/install-deps.sh");
  const size_t start = script.find("packages=(");
  const size_t end = script.find(')', start);
  ASSERT_NE(start, std::string::npos);
  std::istringstream list(script.substr(start + 10, end - start - 10));
  const std::regex versioned("-[0-9]+(\\.[0-9]+)?(-|$)");
  std::vector<std::string> packages;
  for (std::string name; list >> name;) {
    EXPECT_FALSE(std::regex_search(name, versioned)) << name;
    packages.push_back(name);
  }
  for (const std::string tool : {"xdg-utils", "desktop-file-utils", "shared-mime-info", "man-db"})
    EXPECT_NE(std::find(packages.begin(), packages.end(), tool), packages.end()) << tool;
}

}  // namespace
}  // namespace velda::test
