#include "import/other_rows.h"

#include <algorithm>
#include <cstddef>
#include <optional>

#include <fmt/format.h>

#include "import/conll_columns.h"
#include "import/sentence.h"

namespace colx {

namespace {

struct NumberPair {
  std::uint32_t first;
  std::uint32_t second;
};

// The numbers of an ID of the form a-b or a.b; nothing when one has a leading zero or is too large.
std::optional<NumberPair> _pair(std::string_view id) {
  const std::size_t mark = std::min(id.find_first_of("-."), id.size());
  const std::string_view first = id.substr(0, mark);
  const std::string_view second = id.substr(std::min(mark + 1, id.size()));
  NumberPair pair{};
  if (!whole_column(first, pair.first) || has_leading_zero(first)) return std::nullopt;
  if (!whole_column(second, pair.second) || has_leading_zero(second)) return std::nullopt;
  return pair;
}

std::string _unless_underscore(const std::string_view (&columns)[10], std::size_t column) {
  return columns[column] == "_"
             ? ""
             : fmt::format("expected _ in {}, found {}", conll_columns.at(column + 1), in_quotes(columns[column]));
}

}  // namespace

std::string OtherRows::add_range(std::string_view id, std::uint64_t words) {
  const auto range = _pair(id);
  if (!range || range->first != words + 1)
    return fmt::format("expected a range from the next word, {}, found {}", words + 1, in_quotes(id));
  if (range->second <= range->first)
    return fmt::format("expected a range of two words or more, found {}", in_quotes(id));
  if (range->first <= _covered)
    return fmt::format("expected a range behind word {}, which another one covers, found {}", _covered, in_quotes(id));
  _covered = range->second;
  return "";
}

std::string OtherRows::add_empty_node(std::string_view id, std::uint64_t words) {
  if (_word != words) _nodes = 0;
  _word = words;
  ++_nodes;
  const auto node = _pair(id);
  if (node && node->first == words && node->second == _nodes) return "";
  return fmt::format("expected the empty node {}.{}, found {}", words, _nodes, in_quotes(id));
}

std::string misused_column_of_range(const std::string_view (&columns)[10]) {
  for (std::size_t column = 2; column < 9; ++column) {
    if (column == 5 && columns[column] == "Typo=Yes") continue;
    if (std::string text = _unless_underscore(columns, column); !text.empty()) return text;
  }
  return "";
}

std::string misused_column_of_empty_node(const std::string_view (&columns)[10]) {
  std::string text = _unless_underscore(columns, 6);
  return text.empty() ? _unless_underscore(columns, 7) : text;
}

}  // namespace colx
