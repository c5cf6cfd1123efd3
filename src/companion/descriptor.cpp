#include "companion/descriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

#include <fmt/format.h>

#include "companion/errors.h"

namespace colx {

Descriptor::~Descriptor() {
  if (_owned) ::close(_number);
}

Descriptor::Descriptor(Descriptor&& other) noexcept
    : _number(std::exchange(other._number, -1)), _owned(std::exchange(other._owned, false)) {}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  std::swap(_number, other._number);
  std::swap(_owned, other._owned);
  return *this;
}

Descriptor Descriptor::standard_input() {
  Descriptor result;
  result._number = STDIN_FILENO;
  return result;
}

Descriptor Descriptor::standard_output() {
  Descriptor result;
  result._number = STDOUT_FILENO;
  return result;
}

std::size_t Descriptor::read_some(void* to, std::size_t size, std::string_view name) const {
  for (;;) {
    const ssize_t count = ::read(_number, to, size);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR) throw input_error(fmt::format("cannot read {}: {}", name, system_reason()));
  }
}

void Descriptor::write_fully(std::string_view text, std::string_view name) const {
  while (!text.empty()) {
    const ssize_t count = ::write(_number, text.data(), text.size());
    if (count >= 0) {
      text.remove_prefix(static_cast<std::size_t>(count));
      continue;
    }
    if (errno == EINTR) continue;
    const bool lost_reader = errno == EPIPE && !_owned && _number == STDOUT_FILENO;
    const std::string message = fmt::format("cannot write to {}: {}", name, system_reason());
    if (lost_reader) throw reader_gone(message);
    throw output_error(message);
  }
}

void Descriptor::write_fully_at(std::string_view text, std::uint64_t place, std::string_view name) const {
  while (!text.empty()) {
    const ssize_t count = ::pwrite(_number, text.data(), text.size(), static_cast<off_t>(place));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw output_error(fmt::format("cannot write to {}: {}", name, system_reason()));
    text.remove_prefix(static_cast<std::size_t>(count));
    place += static_cast<std::uint64_t>(count);
  }
}

void Descriptor::close(std::string_view name) {
  const int number = std::exchange(_number, -1);
  if (std::exchange(_owned, false) && ::close(number) != 0)
    throw output_error(fmt::format("cannot write to {}: {}", name, system_reason()));
}

Descriptor open_for_reading(const std::string& path) {
  if (path == "-") return Descriptor::standard_input();
  const int number = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (number < 0) throw input_error(fmt::format("cannot open {} for reading: {}", path, system_reason()));
  return Descriptor(number);
}

std::string input_name(const std::string& path) {
  return path == "-" ? "standard input" : path;
}

void write_to_standard_output(std::string_view text) {
  Descriptor::standard_output().write_fully(text, "standard output");
}

std::optional<RegularFile> regular_file(const Descriptor& descriptor) {
  return regular_file(descriptor.number());
}

std::optional<RegularFile> regular_input(const std::string& path) {
  return path == "-" ? regular_file(Descriptor::standard_input()) : regular_file(path);
}

std::string system_reason() {
  return std::generic_category().message(errno);
}

}  // namespace colx
