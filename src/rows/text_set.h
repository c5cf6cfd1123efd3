#pragma once

// Sets of texts, as conditions look into them.

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace colx::table {

// Lets a set be asked for a view.
struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
};
using TextSet = std::unordered_set<std::string, TextHash, std::equal_to<>>;

// The lines of a file, which may be compressed with gzip, begin with a byte order mark and have CR LF for line ends;
// empty lines are left out. Throws input_error.
std::vector<std::string> lines_of(const std::string& path);

}  // namespace colx::table
