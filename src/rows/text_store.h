#pragma once

// Texts kept once each and known by number.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "util/compact_index.h"

namespace colx::table {

// Numbers distinct texts 0, 1, 2 ... in order of first sight. A text takes its own bytes and some 14 more.
class TextStore {
 public:
  // The number of a text, which is copied when it is new. Texts may hold any bytes. Throws std::bad_alloc.
  std::uint32_t number(std::string_view text);

  // The number of a text that has one.
  std::optional<std::uint32_t> find(std::string_view text) const;

  // The text of a number that was given; the view is valid until the next call of `number`.
  std::string_view operator[](std::uint32_t number) const {
    const std::size_t begin = number == 0 ? 0 : _ends[number - 1];
    return {_bytes.data() + begin, _ends[number] - begin};
  }

  std::size_t size() const { return _ends.size(); }

 private:
  std::string _bytes;  // of all texts, one behind another
  std::vector<std::size_t> _ends;
  CompactIndex _lookup;
};

}  // namespace colx::table
