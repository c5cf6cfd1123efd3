#include "import/conll_columns.h"

#include <algorithm>
#include <string>

#include <fmt/format.h>

#include "corpus/datafile_format.h"

namespace colx {

namespace {

bool _is_spaced_well(std::string_view text) {
  if (text.front() == ' ' || text.back() == ' ' || text.find("  ") != std::string_view::npos) return false;
  return std::none_of(text.begin(), text.end(), [](char c) { return c != ' ' && is_white_space(c); });
}

}  // namespace

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
