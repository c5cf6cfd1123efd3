#include "concordance/line_index.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include <fmt/format.h>

#include "companion/errors.h"

namespace colx::concordance {

namespace {

constexpr std::size_t _block_size = std::size_t{64} << 10;

}  // namespace

std::uint64_t LineIndex::line_of(const Descriptor& file, const std::string& name, std::uint64_t byte) {
  const std::uint64_t block = byte / _block_size;
  while (_before.size() <= block) {
    const std::uint64_t last = _before.size() - 1;
    _before.push_back(_before.empty() ? 0 : _before.back() + _count(file, name, last, _block_size));
  }
  return _before[block] + _count(file, name, block, byte % _block_size) + 1;
}

// Counts the line ends among the first bytes of a block.
std::uint64_t LineIndex::_count(const Descriptor& file, const std::string& name, std::uint64_t block,
                                std::size_t size) {
  _bytes.resize(size);
  _bytes.resize(read_at(file, name, block * _block_size, _bytes.data(), size));
  return static_cast<std::uint64_t>(std::count(_bytes.begin(), _bytes.end(), '\n'));
}

std::size_t read_at(const Descriptor& file, const std::string& name, std::uint64_t place, char* to, std::size_t size) {
  std::size_t done = 0;
  while (done < size) {
    const ssize_t count = ::pread(file.number(), to + done, size - done, static_cast<off_t>(place + done));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw input_error(fmt::format("cannot read {}: {}", name, system_reason()));
    if (count == 0) break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

}  // namespace colx::concordance
