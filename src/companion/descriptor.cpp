#include "companion/descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include <fmt/format.h>

#include "companion/errors.h"

namespace colx {

int open_for_reading(const std::string& path) {
  if (path == "-") return STDIN_FILENO;
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) throw input_error(fmt::format("cannot open {} for reading: {}", path, system_reason()));
  return descriptor;
}

std::string input_name(const std::string& path) {
  return path == "-" ? "standard input" : path;
}

void close_input(int descriptor) {
  if (descriptor > STDIN_FILENO) ::close(descriptor);
}

std::size_t read_some(int descriptor, void* to, std::size_t size, std::string_view name) {
  for (;;) {
    const ssize_t count = ::read(descriptor, to, size);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR) throw input_error(fmt::format("cannot read {}: {}", name, system_reason()));
  }
}

void write_fully(int descriptor, std::string_view text, std::string_view name) {
  while (!text.empty()) {
    const ssize_t count = ::write(descriptor, text.data(), text.size());
    if (count >= 0)
      text.remove_prefix(static_cast<std::size_t>(count));
    else if (errno != EINTR)
      throw output_error(fmt::format("cannot write to {}: {}", name, system_reason()));
  }
}

void write_to_standard_output(std::string_view text) {
  write_fully(STDOUT_FILENO, text, "standard output");
}

std::optional<RegularFile> regular_file(const std::string& path) {
  struct stat status {};
  const int result = path == "-" ? ::fstat(STDIN_FILENO, &status) : ::stat(path.c_str(), &status);
  if (result != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return RegularFile{{status.st_dev, status.st_ino}, static_cast<std::size_t>(status.st_size)};
}

std::string system_reason() {
  return std::generic_category().message(errno);
}

}  // namespace colx
