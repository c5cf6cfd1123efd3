#include "base/files.h"

#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <ios>
#include <new>
#include <system_error>

#include "base/errors.h"

namespace colx {

namespace {

std::optional<RegularFile> _regular(const struct stat& status) {
  if (!S_ISREG(status.st_mode)) return std::nullopt;
  return RegularFile{{status.st_dev, status.st_ino}, static_cast<std::size_t>(status.st_size)};
}

}  // namespace

std::ifstream open_input(const std::string& path) {
  std::ifstream stream;
  std::error_code unknown;  // what cannot be looked at is left to open
  if (std::filesystem::is_directory(path, unknown)) return stream;
  errno = 0;
  stream.open(path, std::ios::binary);
  if (!stream.is_open() && errno == ENOMEM) throw std::bad_alloc();
  return stream;
}

bool read_lines(const std::string& path, const std::function<void(const std::string& line)>& take) {
  std::ifstream file = open_input(path);
  if (!file.is_open()) return false;
  // Otherwise a fault of any kind looks like the end of the file.
  file.exceptions(std::ios::badbit);
  try {
    for (std::string line; std::getline(file, line);)
      take(line);
  } catch (const std::ios::failure&) {
    throw unreadable(path);
  }
  return true;
}

std::optional<RegularFile> regular_file(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 ? _regular(status) : std::nullopt;
}

std::optional<RegularFile> regular_file(int descriptor) {
  struct stat status {};
  return ::fstat(descriptor, &status) == 0 ? _regular(status) : std::nullopt;
}

}  // namespace colx
