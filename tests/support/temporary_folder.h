#pragma once

// Files for tests that open some.

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

namespace colx::test {

// A fresh empty folder, removed with all that is in it at the end of its scope.
class TemporaryFolder {
 public:
  TemporaryFolder() : _path(std::filesystem::temp_directory_path() / "ngrex-test-XXXXXX") {
    if (mkdtemp(_path.data()) == nullptr) throw std::filesystem::filesystem_error("mkdtemp", _path, std::error_code());
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(_path, ignored);
  }

  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::string& path() const { return _path; }

  // The path of a file in the folder, whether it is there or not.
  std::string path(std::string_view name) const { return _path + "/" + std::string(name); }

  // Writes a file and returns its path.
  std::string write(std::string_view name, std::string_view content) const {
    std::ofstream file(path(name), std::ios::binary);
    file << content;
    return path(name);
  }

 private:
  std::string _path;
};

}  // namespace colx::test
