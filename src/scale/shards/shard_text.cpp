#include "scale/shards/shard_text.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <ios>
#include <vector>

#include <fmt/format.h>

#include "companion/errors.h"

namespace colx::scale {

namespace {

constexpr std::uint64_t small_piece = std::uint64_t{16} << 10;

// Reads up to `size` bytes from a place; negative when that fails.
ssize_t _read_at(const Descriptor& file, char* to, std::size_t size, std::uint64_t place) {
  for (;;) {
    const ssize_t count = ::pread(file.number(), to, size, static_cast<off_t>(place));
    if (count >= 0 || errno != EINTR) return count;
  }
}

}  // namespace

std::optional<std::uint64_t> find_cut(const Descriptor& file, const std::string& name, std::uint64_t from,
                                      std::uint64_t limit) {
  if (from == 0) return 0;
  std::vector<char> buffer(small_piece);
  bool line_ended = false;
  for (std::uint64_t place = from - 1; place < limit;) {
    const std::uint64_t wanted = std::min<std::uint64_t>(buffer.size(), limit - place);
    const ssize_t count = _read_at(file, buffer.data(), wanted, place);
    if (count < 0) throw input_error(fmt::format("cannot read {}: {}", name, system_reason()));
    if (count == 0) break;
    for (ssize_t i = 0; i < count; ++i) {
      const bool newline = buffer[static_cast<std::size_t>(i)] == '\n';
      if (newline && line_ended) return place + static_cast<std::uint64_t>(i) + 1;
      line_ended = newline;
    }
    place += static_cast<std::uint64_t>(count);
  }
  return std::nullopt;
}

std::streamsize ShardText::xsgetn(char* to, std::streamsize size) {
  const std::uint64_t wanted = _place < _soft_end ? _soft_end - _place : small_piece;
  const auto piece = static_cast<std::size_t>(std::min(wanted, static_cast<std::uint64_t>(size)));
  const ssize_t count = _read_at(_file, to, piece, _place);
  if (count < 0) throw std::ios::failure("read");
  _place += static_cast<std::uint64_t>(count);
  return count;
}

}  // namespace colx::scale
