#include "rows/temporary_file.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>

#include <fmt/format.h>

#include "companion/errors.h"

namespace colx::table {

TemporaryFile::TemporaryFile() {
  const char* const chosen = ::getenv("TMPDIR");
  const std::string folder = chosen == nullptr || *chosen == '\0' ? "/tmp" : chosen;
  _name = "a temporary file in " + folder;
  std::string path = folder + "/ngrex-table-XXXXXX";
  const int number = ::mkostemp(path.data(), O_CLOEXEC);
  if (number < 0) throw output_error(fmt::format("cannot make {}: {}", _name, system_reason()));
  _file = Descriptor(number);
  ::unlink(path.c_str());
}

void TemporaryFile::append(std::string_view text) {
  _file.write_fully(text, _name);
  _size += text.size();
}

void TemporaryFile::read(std::uint64_t place, char* to, std::size_t size) const {
  while (size > 0) {
    const ssize_t count = ::pread(_file.number(), to, size, static_cast<off_t>(place));
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0)
      throw input_error(
          fmt::format("cannot read {}: {}", _name, count == 0 ? "it has become shorter" : system_reason()));
    place += static_cast<std::uint64_t>(count);
    to += count;
    size -= static_cast<std::size_t>(count);
  }
}

}  // namespace colx::table
