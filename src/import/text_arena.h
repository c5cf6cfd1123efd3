#pragma once

// Copies of short texts that are all given up together.

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

namespace colx {

// Owns copies of texts, which stay where they are until `clear`, also when the arena is moved. Memory is used again
// after that, but for what single texts above the usual size of a block took.
class TextArena {
 public:
  // Copies a text; the view of the copy is valid until the next `clear`.
  std::string_view keep(std::string_view text) {
    char* const copy = _space(text.size());
    if (!text.empty()) std::memcpy(copy, text.data(), text.size());
    return {copy, text.size()};
  }

  // Gives all copies up.
  void clear() {
    _large.clear();
    _used = 0;
    _next = _end = nullptr;
  }

 private:
  static constexpr std::size_t block_size = std::size_t{16} << 10;

  char* _space(std::size_t size) {
    if (size > block_size) return _large.emplace_back(std::make_unique<char[]>(size)).get();
    if (size > static_cast<std::size_t>(_end - _next)) {
      if (_used == _blocks.size()) _blocks.push_back(std::make_unique<char[]>(block_size));
      _next = _blocks[_used++].get();
      _end = _next + block_size;
    }
    char* const begin = _next;
    _next += size;
    return begin;
  }

  std::vector<std::unique_ptr<char[]>> _blocks;
  std::vector<std::unique_ptr<char[]>> _large;
  std::size_t _used = 0;  // blocks
  char* _next = nullptr;
  char* _end = nullptr;
};

}  // namespace colx
