#include "rows/condition.h"

#include <regex.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <limits>
#include <new>
#include <system_error>
#include <utility>

#include <fmt/format.h>

#include "companion/case_folding.h"
#include "companion/errors.h"
#include "companion/lemma_protection.h"
#include "companion/utf8.h"
#include "rows/bracket_ranges.h"

namespace colx::table {

struct Condition::Expression {
  Expression(const std::string& text, CaseOf letters) {
    const int flags = REG_EXTENDED | (letters == CaseOf::is_ignored ? REG_ICASE : 0);
    const int error = regcomp(&compiled, with_ranges_written_out(text).c_str(), flags);
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

// The row with as many digits as are printed when nothing is said about them: which rows are in a table does not depend
// on how it is printed.
Row _with_usual_digits(const Row& row) {
  Row result = row;
  result.style.precision = Style().precision;
  return result;
}

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

Condition::Condition(const WrittenCondition& written, CaseOf letters)
    : _column(written.column), _comparison(written.comparison), _letters(letters) {
  if (!_column.is_of_block())
    throw usage_error(fmt::format("the condition \"{}\" asks for the {}, which is known only afterwards", written.whole,
                                  _column.name));
  switch (_comparison) {
    case Comparison::matches:
    case Comparison::matches_not:
      _expression = std::make_shared<const Expression>(written.value, letters);
      return;
    case Comparison::in:
    case Comparison::not_in:
      _take_set(written);
      return;
    case Comparison::equal:
    case Comparison::unequal:
      if (_column.is_text())
        _take_text(written);
      else
        _number = _number_from(written.value, written.whole);
      return;
    case Comparison::less:
    case Comparison::at_most:
    case Comparison::at_least:
    case Comparison::greater:
      break;
  }
  if (_column.is_text())
    throw usage_error(fmt::format("the condition \"{}\" asks for the order of texts", written.whole));
  _number = _number_from(written.value, written.whole);
  if (std::isnan(_number))
    throw usage_error(fmt::format("the condition \"{}\" can never be met, as NA has no order", written.whole));
}

void Condition::_take_text(const WrittenCondition& written) {
  const bool is_lemma = _column.quantity == Quantity::lemma;
  _text = as_compared(is_lemma ? as_lemma(written.value, _note) : written.value, _letters);
}

void Condition::_take_set(const WrittenCondition& written) {
  if (!_column.is_text())
    throw usage_error(fmt::format("the condition \"{}\" seeks a number in a set of texts", written.whole));
  _set_file = written.value;
  auto set = std::make_shared<TextSet>();
  std::size_t taken_otherwise = 0;
  for (const std::string& line : lines_of(written.value)) {
    std::string note;
    const std::string text = _column.quantity == Quantity::lemma ? as_lemma(line, note) : line;
    if (!note.empty()) ++taken_otherwise;
    set->insert(as_compared(text, _letters));
  }
  if (taken_otherwise > 0)
    _note = fmt::format(
        "{}: {} of {} texts are taken for the lemmas that ngrex-import makes of them, as no lemma has "
        "one of ' : ; ^ _",
        written.value, taken_otherwise, set->size());
  _set = std::move(set);
}

bool Condition::admits(const Row& row) const {
  if (_expression == nullptr && !_column.is_text()) return _compares(number_of(_column, row));
  std::string scratch;
  if (_expression != nullptr) {
    const std::string_view text = text_of(field_of(_column, _with_usual_digits(row), scratch));
    return _expression->matches(text) == (_comparison == Comparison::matches);
  }
  std::string_view text = field_of(_column, row, scratch).content;
  std::string without_case;
  if (_letters == CaseOf::is_ignored) text = without_case = folded(text);
  if (_set != nullptr) return _set->contains(text) == (_comparison == Comparison::in);
  return (text == _text) == (_comparison == Comparison::equal);
}

bool Condition::_compares(double value) const {
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
    case Comparison::in:
    case Comparison::not_in:
      break;  // no comparisons of numbers
  }
  return false;
}

std::string as_compared(std::string_view text, CaseOf letters) {
  return letters == CaseOf::is_ignored ? folded(text) : std::string(text);
}

std::string as_lemma(const std::string& text, std::string& note) {
  std::string lemma = protect_lemma(text);
  if (lemma != text)
    note = fmt::format(
        "\"{}\" is taken for \"{}\", the lemma that ngrex-import makes of it, as no lemma has one of "
        "' : ; ^ _",
        printable(text), printable(lemma));
  return lemma;
}

}  // namespace colx::table
