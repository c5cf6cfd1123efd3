#pragma once

// Opening files for reading, reading their lines, and telling files apart.

#include <sys/types.h>

#include <compare>
#include <cstddef>
#include <fstream>
#include <functional>
#include <optional>
#include <string>

namespace colx {

// Opens a file for reading; the stream is not open when that fails. A directory counts as a file that cannot be opened,
// although the system would open it. Throws std::bad_alloc when it fails for want of memory.
std::ifstream open_input(const std::string& path);

// Hands the lines of a file, without their line feeds, to `take`. Returns false when the file cannot be opened. Throws
// fatal_error when it cannot be read to its end, and std::bad_alloc.
bool read_lines(const std::string& path, const std::function<void(const std::string& line)>& take);

// Tells regular files apart, whatever names lead to them.
struct FileIdentity {
  dev_t device = 0;
  ino_t inode = 0;

  auto operator<=>(const FileIdentity&) const = default;
};

// A regular file, and its size in bytes.
struct RegularFile {
  FileIdentity identity;
  std::size_t size = 0;
};

// The regular file of that name, or behind an open descriptor; nothing when there is none.
std::optional<RegularFile> regular_file(const std::string& path);
std::optional<RegularFile> regular_file(int descriptor);

}  // namespace colx
