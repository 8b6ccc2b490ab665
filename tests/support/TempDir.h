#pragma once

#include <string>

namespace velda::test {

// A fresh folder under the system's temporary folder, removed with its
// contents when the object goes.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return path_; }
  std::string file(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

// A fresh temporary folder that is the working folder for the object's
// lifetime, for code that writes files under fixed names ("result.txt",
// "tempkvf.dat"); the previous working folder comes back even when an
// assertion ends the test early.
class InTempDir {
 public:
  InTempDir();
  ~InTempDir();
  InTempDir(const InTempDir&) = delete;
  InTempDir& operator=(const InTempDir&) = delete;

  const std::string& path() const { return dir_.path(); }
  std::string file(const std::string& name) const { return dir_.file(name); }
  // The whole content of a file of the folder (empty when there is none).
  std::string read(const char* name) const;

 private:
  TempDir dir_;
  std::string previous_;
};

}  // namespace velda::test
