#include "rows/row_filter.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

#include <fmt/format.h>

#include "companion/errors.h"

namespace colx::table {

namespace {

struct Operator {
  std::string_view sign;
  Comparison comparison;
};

// Those of two characters before those that they begin with.
constexpr auto _operators = std::to_array<Operator>({{"!=", Comparison::unequal},
                                                     {"!~", Comparison::matches_not},
                                                     {"<=", Comparison::at_most},
                                                     {">=", Comparison::at_least},
                                                     {"=", Comparison::equal},
                                                     {"~", Comparison::matches},
                                                     {"<", Comparison::less},
                                                     {">", Comparison::greater}});
constexpr auto _words = std::to_array<Operator>({{" in ", Comparison::in}, {" not in ", Comparison::not_in}});

constexpr std::string_view _or = " or ";
constexpr std::string_view _and = " and ";

std::string_view _name_at_the_beginning(std::string_view text) {
  constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_";
  return text.substr(0, std::min(text.find_first_not_of(letters), text.size()));
}

template <std::size_t count>
const Operator* _operator_at(std::string_view text, const std::array<Operator, count>& known) {
  const auto* const found =
      std::find_if(known.begin(), known.end(), [&](const Operator& one) { return text.starts_with(one.sign); });
  return found == known.end() ? nullptr : found;
}

// Whether a text goes on as a condition does. A name that is no column counts before a sign, where it must be a slip of
// the pen, and not before a word.
bool _begins_as_condition(std::string_view text) {
  const std::string_view name = _name_at_the_beginning(text);
  if (name.empty()) return false;
  const std::string_view rest = text.substr(name.size());
  if (_operator_at(rest, _operators) != nullptr) return true;
  return _operator_at(rest, _words) != nullptr && find_column(name).has_value();
}

// Whether a condition may end here: at the end, or where the next one begins.
bool _ends_at(std::string_view rest) {
  for (const std::string_view connection : {_or, _and})
    if (rest.starts_with(connection)) return _begins_as_condition(rest.substr(connection.size()));
  return rest.empty();
}

// Takes a value in quotes from the beginning of a text; nothing when it is none.
std::optional<std::string> _take_quoted(std::string_view& text) {
  if (!text.starts_with('\'')) return std::nullopt;
  std::string value;
  for (std::size_t i = 1; i < text.size(); ++i) {
    if (text[i] == '\'') {
      if (!text.substr(i + 1).starts_with('\'')) {
        if (!_ends_at(text.substr(i + 1))) return std::nullopt;
        text.remove_prefix(i + 1);
        return value;
      }
      ++i;
    }
    value += text[i];
  }
  return std::nullopt;
}

std::string _take_value(std::string_view& text) {
  if (std::optional<std::string> quoted = _take_quoted(text); quoted.has_value()) return *quoted;
  std::size_t size = 0;
  while (!_ends_at(text.substr(size)))
    ++size;
  std::string value(text.substr(0, size));
  text.remove_prefix(size);
  return value;
}

WrittenCondition _take_condition(std::string_view& text) {
  WrittenCondition written;
  written.whole = text;
  std::string_view name = _name_at_the_beginning(text);
  const Operator* found = _operator_at(text.substr(name.size()), _words);
  if (found == nullptr) {
    const std::size_t sign = text.find_first_of("=!~<>");
    if (sign != std::string_view::npos) {
      name = text.substr(0, sign);
      found = _operator_at(text.substr(sign), _operators);
    }
  }
  if (found == nullptr)
    throw usage_error(fmt::format("the condition \"{}\" has none of = != ~ !~ < <= >= >, in, not in", text));
  const auto column = find_column(name);
  if (!column.has_value())
    throw usage_error(fmt::format("the condition \"{}\" begins with no column: there is no \"{}\"", text, name));
  written.column = *column;
  written.comparison = found->comparison;
  text.remove_prefix(name.size() + found->sign.size());
  written.value = _take_value(text);
  written.whole.remove_suffix(text.size());
  return written;
}

}  // namespace

RowFilter::RowFilter(std::string_view text, CaseOf letters) : _alternatives(1) {
  for (;;) {
    _alternatives.back().emplace_back(_take_condition(text), letters);
    if (text.empty()) return;
    const bool is_alternative = text.starts_with(_or);
    text.remove_prefix((is_alternative ? _or : _and).size());
    if (is_alternative) _alternatives.emplace_back();
  }
}

std::vector<std::string> RowFilter::set_files() const {
  std::vector<std::string> files;
  for (const std::vector<Condition>& joined : _alternatives)
    for (const Condition& condition : joined)
      if (!condition.set_file().empty()) files.push_back(condition.set_file());
  return files;
}

std::vector<Column> RowFilter::columns() const {
  std::vector<Column> result;
  for (const auto& joined : _alternatives)
    for (const Condition& condition : joined)
      result.push_back(condition.column());
  return result;
}

std::vector<std::string> RowFilter::notes() const {
  std::vector<std::string> result;
  for (const auto& joined : _alternatives)
    for (const Condition& condition : joined)
      if (!condition.note().empty()) result.push_back(condition.note());
  return result;
}

bool RowFilter::admits(const Row& row) const {
  return std::any_of(_alternatives.begin(), _alternatives.end(), [&](const std::vector<Condition>& joined) {
    return std::all_of(joined.begin(), joined.end(), [&](const Condition& condition) { return condition.admits(row); });
  });
}

}  // namespace colx::table
