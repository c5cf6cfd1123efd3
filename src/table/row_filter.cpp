#include "table/row_filter.h"

#include <regex.h>

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include <fmt/format.h>

#include "companion/errors.h"

namespace colx::table {

struct RowFilter::Expression {
  explicit Expression(const std::string& text) {
    const int error = regcomp(&compiled, text.c_str(), REG_EXTENDED | REG_NEWLINE);
    if (error == 0) return;
    std::array<char, 200> message{};
    regerror(error, &compiled, message.data(), message.size());
    throw usage_error(fmt::format("the regular expression \"{}\" cannot be used: {}", text, message.data()));
  }
  ~Expression() { regfree(&compiled); }

  Expression(const Expression&) = delete;
  Expression& operator=(const Expression&) = delete;

  bool matches(std::string_view text) const {
    regmatch_t range{};
    range.rm_so = 0;
    range.rm_eo = static_cast<regoff_t>(text.size());
    return regexec(&compiled, text.data(), 0, &range, REG_STARTEND) == 0;
  }

  regex_t compiled{};
};

namespace {

double _number_from(std::string_view text, std::string_view condition) {
  if (text == "NA") return std::numeric_limits<double>::quiet_NaN();
  if (text == "Inf") return std::numeric_limits<double>::infinity();
  if (text == "-Inf") return -std::numeric_limits<double>::infinity();
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size())
    throw usage_error(fmt::format("\"{}\" compares a numeric column with something that is no number", condition));
  return value;
}

}  // namespace

RowFilter::RowFilter(std::string_view condition) {
  const std::size_t at = condition.find_first_of("=~");
  if (at == std::string_view::npos)
    throw usage_error(fmt::format("the condition \"{}\" has neither = nor ~", condition));
  const auto column = find_column(condition.substr(0, at));
  if (!column.has_value())
    throw usage_error(fmt::format("the condition \"{}\" begins with no column: there is no \"{}\"", condition,
                                  condition.substr(0, at)));
  if (!column->is_of_block())
    throw usage_error(
        fmt::format("the condition \"{}\" asks for the {}, which is known only afterwards", condition, column->name));
  _column = *column;
  _text = condition.substr(at + 1);
  if (condition[at] == '~')
    _expression = std::make_shared<const Expression>(_text);
  else if (!_column.is_text())
    _number = _number_from(_text, condition);
}

bool RowFilter::admits(const Row& row) const {
  if (_expression == nullptr) return _equals(row);
  std::string scratch;
  // The matcher wants a valid address even where there is nothing to match.
  const std::string_view text = text_of(field_of(_column, row, scratch));
  return _expression->matches(text.data() == nullptr ? std::string_view("") : text);
}

bool RowFilter::_equals(const Row& row) const {
  std::string scratch;
  const Field field = field_of(_column, row, scratch);
  if (_column.is_text()) return field.content == _text;
  const double value = value_of(field);
  return value == _number || (std::isnan(value) && std::isnan(_number));
}

}  // namespace colx::table
