// Writes the sample projects (one of every feature) into a folder, made
// when missing: the seeds of the project-file fuzzer.

#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>

#include "document/ProjectFileSamples.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
    return 2;
  }
  const std::string folder = argv[1];
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) return 1;
  const std::pair<const char*, std::string> seeds[] = {
      {"small.gaj", velda::test::projectBytes(*velda::test::smallProject())},
      {"full.gaj", velda::test::projectBytes(*velda::test::fullProject())},
  };
  for (const auto& [name, bytes] : seeds) {
    std::FILE* file = std::fopen((folder + "/" + name).c_str(), "wb");
    if (!file || bytes.empty() || std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size()) return 1;
    if (std::fclose(file) != 0) return 1;
  }
  return 0;
}
