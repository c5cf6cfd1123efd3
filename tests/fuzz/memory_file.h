#pragma once

// A file in memory for code that opens its input by name.

#include <sys/mman.h>

#include <string>
#include <string_view>

#include "companion/descriptor.h"

namespace colx::fuzz {

class MemoryFile {
 public:
  explicit MemoryFile(std::string_view content) : _file(::memfd_create("fuzz", MFD_CLOEXEC)) {
    _file.write_fully(content, "a file in memory");
  }

  // A path under which it is opened anew, from its beginning.
  std::string path() const { return "/proc/self/fd/" + std::to_string(_file.number()); }

 private:
  Descriptor _file;
};

}  // namespace colx::fuzz
