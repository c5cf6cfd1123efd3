#pragma once

// Lists of seen words as bytes of intermediate files.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>

#include "scale/contexts/seen_words.h"
#include "spill/encoding.h"

namespace colx::scale {

// A list in the making: how many units of 32 bits there are, and these. A word is a unit. A frequency other than 1
// stands before its word, under a tag that no word has; if it does not fit there, as a unit of its own behind that.
inline constexpr std::uint32_t frequency_mark = 0xFF000000;
inline constexpr std::uint32_t longer_frequency = 0xFFFFFFFF;

// Appends such a list.
inline void append_seen_words(std::string& to, std::span<const SeenWord> words) {
  const auto is_long = [](const SeenWord& word) { return word.count >= (longer_frequency & ~frequency_mark); };
  std::size_t units = words.size();
  for (const SeenWord& word : words)
    units += (word.count != 1 ? 1U : 0U) + (is_long(word) ? 1U : 0U);
  append_short(to, units);
  const std::size_t begin = to.size();
  to.resize(begin + units * sizeof(std::uint32_t));
  char* out = to.data() + begin;
  const auto put = [&](std::uint32_t unit) {
    std::memcpy(out, &unit, sizeof unit);
    out += sizeof unit;
  };
  for (const SeenWord& word : words) {
    if (is_long(word)) {
      put(longer_frequency);
      put(word.count);
    } else if (word.count != 1) {
      put(frequency_mark | word.count);
    }
    put(word.word);
  }
}

// Reads such a list, calls `take(word, count)` for its words in order, and moves `from` behind it.
template <typename Take>
void for_each_seen_word(const char*& from, const Take& take) {
  const std::uint64_t units = get_short(from);
  const char* const end = from + units * sizeof(std::uint32_t);
  while (from != end) {
    auto unit = get_fixed<std::uint32_t>(from);
    std::uint32_t count = 1;
    if (unit >= frequency_mark) {
      count = unit != longer_frequency ? unit & ~frequency_mark : get_fixed<std::uint32_t>(from);
      unit = get_fixed<std::uint32_t>(from);
    }
    take(unit, count);
  }
}

// Moves `from` behind such a list.
inline void skip_seen_words(const char*& from) {
  const std::uint64_t units = get_short(from);
  from += units * sizeof(std::uint32_t);
}

// Appends a ranked list: for each frequency that it has, from the highest, the frequency, the number of words that have
// it, and these; at the end a 0.
inline void append_ranked_words(std::string& to, std::span<const SeenWord> words) {
  for (auto begin = words.begin(); begin != words.end();) {
    const auto end = std::find_if(begin, words.end(), [&](const SeenWord& word) { return word.count != begin->count; });
    append_short(to, begin->count);
    append_short(to, static_cast<std::uint64_t>(end - begin));
    for (; begin != end; ++begin)
      append_fixed(to, begin->word);
  }
  append_short(to, 0);
}

// Reads such a list, calls `take(word, count)` for its words in order, and moves `from` behind it.
template <typename Take>
void for_each_ranked_word(const char*& from, const Take& take) {
  while (const std::uint64_t count = get_short(from)) {
    for (std::uint64_t left = get_short(from); left > 0; --left)
      take(get_fixed<std::uint32_t>(from), static_cast<std::uint32_t>(count));
  }
}

}  // namespace colx::scale
