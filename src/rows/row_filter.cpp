#include "rows/row_filter.h"

#include <regex.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <limits>
#include <new>

#include <fmt/format.h>

#include "companion/errors.h"
#include "rows/bracket_ranges.h"

namespace colx::table {

struct RowFilter::Expression {
  explicit Expression(const std::string& text) {
    const int error = regcomp(&compiled, with_ranges_written_out(text).c_str(), REG_EXTENDED);
    if (error == 0) return;
    if (error == REG_ESPACE) throw std::bad_alloc();
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
    errno = 0;
    const int result = regexec(&compiled, text.data(), 0, &range, REG_STARTEND);
    // The GNU library calls a lack of memory "no match".
    if (result != 0 && errno == ENOMEM) throw std::bad_alloc();
    return result == 0;
  }

  regex_t compiled{};
};

namespace {

struct Operator {
  std::string_view sign;
  Comparison comparison;
};

// Those of two characters before those that they begin with.
constexpr std::array<Operator, 8> _operators = {{{"!=", Comparison::unequal},
                                                 {"!~", Comparison::matches_not},
                                                 {"<=", Comparison::at_most},
                                                 {">=", Comparison::at_least},
                                                 {"=", Comparison::equal},
                                                 {"~", Comparison::matches},
                                                 {"<", Comparison::less},
                                                 {">", Comparison::greater}}};

double _number_from(std::string_view text, std::string_view condition) {
  if (text == "NA") return std::numeric_limits<double>::quiet_NaN();
  if (text == "Inf") return std::numeric_limits<double>::infinity();
  if (text == "-Inf") return -std::numeric_limits<double>::infinity();
  double value = 0;
  // Only digits begin a number here, not the names that the library knows.
  const std::size_t begin = text.find_first_of("0123456789.");
  const bool is_number = begin == 0 || (begin == 1 && text[0] == '-');
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (!is_number || end != text.data() + text.size())
    throw usage_error(fmt::format("\"{}\" compares a numeric column with something that is no number", condition));
  if (error == std::errc::result_out_of_range)
    throw usage_error(fmt::format("\"{}\" compares with a number that is too large or too small", condition));
  return value;
}

}  // namespace

RowFilter::RowFilter(std::string_view condition) {
  const std::size_t at = condition.find_first_of("=!~<>");
  const auto* const found = at == std::string_view::npos
                                ? _operators.end()
                                : std::find_if(_operators.begin(), _operators.end(), [&](const Operator& known) {
                                    return condition.substr(at).starts_with(known.sign);
                                  });
  if (found == _operators.end())
    throw usage_error(fmt::format("the condition \"{}\" has none of = != ~ !~ < <= >= >", condition));
  const auto column = find_column(condition.substr(0, at));
  if (!column.has_value())
    throw usage_error(fmt::format("the condition \"{}\" begins with no column: there is no \"{}\"", condition,
                                  condition.substr(0, at)));
  if (!column->is_of_block())
    throw usage_error(
        fmt::format("the condition \"{}\" asks for the {}, which is known only afterwards", condition, column->name));
  _column = *column;
  _comparison = found->comparison;
  _text = condition.substr(at + found->sign.size());
  if (_comparison == Comparison::matches || _comparison == Comparison::matches_not)
    _expression = std::make_shared<const Expression>(_text);
  else if (!_column.is_text())
    _number = _number_from(_text, condition);
  const bool asks_for_order = _comparison == Comparison::less || _comparison == Comparison::at_most ||
                              _comparison == Comparison::at_least || _comparison == Comparison::greater;
  if (asks_for_order && _column.is_text())
    throw usage_error(fmt::format("the condition \"{}\" asks for the order of texts", condition));
  if (asks_for_order && std::isnan(_number))
    throw usage_error(fmt::format("the condition \"{}\" can never be met, as NA has no order", condition));
}

bool RowFilter::admits(const Row& row) const {
  std::string scratch;
  const Field field = field_of(_column, row, scratch);
  if (_expression != nullptr) {
    return _expression->matches(text_of(field)) == (_comparison == Comparison::matches);
  }
  if (_column.is_text()) return (field.content == _text) == (_comparison == Comparison::equal);
  return _compares(value_of(field));
}

bool RowFilter::_compares(double value) const {
  const bool equal = value == _number || (std::isnan(value) && std::isnan(_number));
  switch (_comparison) {
    case Comparison::equal:
      return equal;
    case Comparison::unequal:
      return !equal;
    case Comparison::less:
      return value < _number;
    case Comparison::at_most:
      return value <= _number;
    case Comparison::at_least:
      return value >= _number;
    case Comparison::greater:
      return value > _number;
    case Comparison::matches:
    case Comparison::matches_not:
      break;  // no comparisons of numbers
  }
  return false;
}

}  // namespace colx::table
