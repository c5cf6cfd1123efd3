#pragma once

// The rules by which ngrex takes the fields of a datafile, and what a datafile may hold at most. The parser goes by
// them, and so does every program that writes or checks datafiles.

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "base/config.h"
#include "model/tagged_lemma.h"

namespace colx {

// The characters at which a lemma is cut: each of them begins a technical suffix.
inline constexpr std::string_view suffix_marks = "':;^_";
inline constexpr std::array<bool, 256> is_suffix_mark = [] {
  std::array<bool, 256> table{};
  for (const char c : suffix_marks)
    table[static_cast<unsigned char>(c)] = true;
  return table;
}();

// The most words of a sentence.
inline constexpr std::uint32_t longest_sentence = constants::max_sentence_length;

// The most bytes of a lemma, as far as it is kept, and of a tag.
inline constexpr std::uint32_t longest_text = 65535;

// The most tags, masked, that a run can tell apart: their indexes take a byte, whose largest value is none.
inline constexpr std::size_t most_distinct_tags = std::numeric_limits<std::uint8_t>::max() - 1;

// The most lemmas, as far as they are kept, that N-grams can tell apart.
inline constexpr std::size_t most_distinct_lemmas = std::size_t{TaggedLemma::_lemma_bits_mask} + 1;

// Tells whether a byte separates fields: white space of the classic locale.
constexpr bool is_white_space(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

// What is kept of a lemma: everything before its first technical suffix. A view into the lemma.
constexpr std::string_view kept_lemma(std::string_view lemma) {
  std::size_t size = 0;
  while (size < lemma.size() && !is_suffix_mark[static_cast<unsigned char>(lemma[size])])
    ++size;
  return lemma.substr(0, size);
}

// Whether a text is a tag mask: '*' and '-', at least one of them.
constexpr bool is_tag_mask(std::string_view text) {
  constexpr char marks[] = {constants::significant_position_mark, constants::insignificant_position_mark};
  return !text.empty() && text.find_first_not_of(std::string_view(marks, sizeof marks)) == std::string_view::npos;
}

// What is kept of a tag: its characters where the mask has '*', '-' elsewhere, cut or filled up to the length of the
// mask.
std::string masked_tag(std::string_view tag, std::string_view mask);

}  // namespace colx
