#pragma once

// Hashing of texts for sets and maps that are asked with views.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "util/hashing.h"

namespace colx {

struct TextHash {
  using is_transparent = void;

  std::size_t operator()(std::string_view text) const { return hash_bytes(text.data(), text.size()); }
};

// Distinct texts, and how often each was seen. A text is copied only when it is new.
using TextSet = std::unordered_set<std::string, TextHash, std::equal_to<>>;
using TextCounts = std::unordered_map<std::string, std::uint64_t, TextHash, std::equal_to<>>;

inline void add_text(TextSet& texts, std::string_view text) {
  if (!texts.contains(text)) texts.emplace(text);
}

// The count of a text, 0 for a new one. It stays where it is as long as the counts do.
inline std::uint64_t& count_of(TextCounts& counts, std::string_view text) {
  const auto found = counts.find(text);
  return found != counts.end() ? found->second : counts.emplace(text, 0).first->second;
}

}  // namespace colx
