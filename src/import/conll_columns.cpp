#include "import/conll_columns.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <string>

#include <fmt/format.h>

#include "companion/utf8.h"
#include "corpus/datafile_format.h"
#include "util/short_runs.h"

namespace colx {

namespace {

bool _is_spaced_well(std::string_view text) {
  if (text.front() == ' ' || text.back() == ' ' || text.find("  ") != std::string_view::npos) return false;
  return std::none_of(text.begin(), text.end(), [](char c) { return c != ' ' && is_white_space(c); });
}

}  // namespace

// Characters of two and three bytes, of which most other text is made, are told by their first byte and those that
// continue it.
bool is_utf8(std::string_view text) {
  const auto continues = [&](std::size_t i) { return (static_cast<unsigned char>(text[i]) & 0xC0U) == 0x80; };
  while (!text.empty()) {
    if (text.size() >= sizeof(std::uint64_t)) {
      const std::uint64_t others = load_up_to_8(text.data(), sizeof others) & 0x8080808080808080U;
      text.remove_prefix(static_cast<std::size_t>(std::countr_zero(others)) / 8);
      if (others == 0) continue;
    }
    const auto first = static_cast<unsigned char>(text[0]);
    std::size_t size = 1;
    if (first >= 0xC2 && first < 0xE0 && text.size() >= 2 && continues(1)) {
      size = 2;
    } else if (first > 0xE0 && first < 0xF0 && first != 0xED && text.size() >= 3 && continues(1) && continues(2)) {
      size = 3;
    } else if (first >= 0x80) {
      const Character character = first_character(text);
      if (!character.is_valid) return false;
      size = character.size;
    }
    text.remove_prefix(size);
  }
  return true;
}

void check_columns(const std::string_view (&columns)[10], std::uint64_t line, std::vector<TreebankProblem>& problems) {
  for (unsigned column = 2; column <= 10; ++column) {
    if (column == 7) continue;
    const std::string_view text = columns[column - 1];
    const auto note = [&](Fault fault, std::string found) {
      problems.push_back({line, column, conll_columns.at(column), std::move(found), fault});
    };
    if (text.empty()) {
      note(Fault::empty_column, "expected a text or _, found nothing");
    } else if (column == 2 || column == 3 || column == 10) {
      if (!_is_spaced_well(text))
        note(Fault::misplaced_space,
             fmt::format("expected single spaces inside the text only, found {}", in_quotes(text)));
    } else if (std::any_of(text.begin(), text.end(), is_white_space)) {
      note(Fault::misplaced_space, fmt::format("expected a text without white space, found {}", in_quotes(text)));
    }
  }
}

}  // namespace colx
