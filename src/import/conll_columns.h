#pragma once

// The ten columns of the CoNLL formats: their names, their numbers, and what CoNLL-U allows to stand in them.

#include <array>
#include <charconv>
#include <cstdint>
#include <string_view>
#include <system_error>
#include <vector>

#include "import/sentence.h"

namespace colx {

// By number, from 1; the name of the whole row is empty.
inline constexpr std::array conll_columns = {"",      "ID",   "FORM",   "LEMMA", "UPOS", "XPOS",
                                             "FEATS", "HEAD", "DEPREL", "DEPS",  "MISC"};

// Whether a column is a number that fits; sets it.
inline bool whole_column(std::string_view text, std::uint32_t& value) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size();
}

// The number that a column is; 0 when it is none, or none that fits.
inline std::uint32_t number_or_0(std::string_view text) {
  std::uint32_t value = 0;
  return whole_column(text, value) ? value : 0;
}

inline bool has_leading_zero(std::string_view number) {
  return number.size() > 1 && number.front() == '0';
}

// Notes columns of a row of CoNLL-U that are empty or hold white space of ASCII where none may be: inside all columns
// but FORM, LEMMA and MISC, and there at an edge, doubled, or other than a space. ID and HEAD are left to those who
// read their numbers.
void check_columns(const std::string_view (&columns)[10], std::uint64_t line, std::vector<TreebankProblem>& problems);

}  // namespace colx
