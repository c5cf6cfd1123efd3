#pragma once

// A file in memory for code that opens its input by name.

#include <sys/mman.h>
#include <unistd.h>

#include <string>
#include <string_view>

#include "companion/descriptor.h"

namespace colx::fuzz {

class MemoryFile {
 public:
  explicit MemoryFile(std::string_view content) : _descriptor(::memfd_create("fuzz", MFD_CLOEXEC)) {
    write_fully(_descriptor, content, "a file in memory");
  }
  ~MemoryFile() { ::close(_descriptor); }

  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  // A path under which it is opened anew, from its beginning.
  std::string path() const { return "/proc/self/fd/" + std::to_string(_descriptor); }

 private:
  int _descriptor;
};

}  // namespace colx::fuzz
