#include "rows/bracket_ranges.h"

#include <algorithm>
#include <cstddef>

#include <fmt/format.h>

#include "companion/errors.h"
#include "companion/utf8.h"

namespace colx::table {

namespace {

constexpr char32_t first_outside_ascii = 0x80;

// Appends a range that does not run backwards and ends outside ASCII. Its part within ASCII stays a range: written out
// it could hold a closing bracket.
void _append_range(std::string& out, char32_t first, char32_t last) {
  if (first < first_outside_ascii) {
    append_character(out, first);
    out += "-\x7f";
  }
  for (char32_t code = std::max(first, first_outside_ascii); code <= last; ++code)
    if (code < 0xD800 || code > 0xDFFF) append_character(out, code);
}

// The size of a class, such as [:alpha:], at the beginning of a text; 0 when there is none.
std::size_t _class_size(std::string_view text) {
  if (text.size() < 2 || text[0] != '[' || std::string_view(":.=").find(text[1]) == std::string_view::npos) return 0;
  const char closing[] = {text[1], ']'};
  const std::size_t end = text.find(std::string_view(closing, 2), 2);
  return end == std::string_view::npos ? 0 : end + 2;
}

// Copies a bracket expression from its opening bracket on and returns its size; an expression that is not closed is
// left to the compiler to complain of.
std::size_t _copy_bracket(std::string_view text, std::string& out) {
  std::size_t at = text.substr(1).starts_with('^') ? 2 : 1;
  out += text.substr(0, at);
  // A closing bracket in first place is a character like others.
  for (bool is_first = true; at < text.size() && (is_first || text[at] != ']'); is_first = false) {
    const std::string_view rest = text.substr(at);
    if (const std::size_t size = _class_size(rest); size > 0) {
      out += rest.substr(0, size);
      at += size;
      continue;
    }
    const Character first = first_character(rest);
    const std::string_view behind = rest.substr(first.size);
    if (behind.size() < 2 || behind[0] != '-' || behind[1] == ']' || _class_size(behind.substr(1)) > 0) {
      out += rest.substr(0, first.size);
      at += first.size;
      continue;
    }
    const Character last = first_character(behind.substr(1));
    const std::string_view range = rest.substr(0, first.size + 1 + last.size);
    if (!first.is_valid || !last.is_valid || std::max(first.code, last.code) < first_outside_ascii)
      out += range;
    else if (last.code < first.code)
      throw usage_error(fmt::format("the range \"{}\" of a regular expression runs backwards", range));
    else
      _append_range(out, first.code, last.code);
    at += range.size();
  }
  if (at < text.size()) out += text[at++];
  return at;
}

}  // namespace

std::string with_ranges_written_out(std::string_view expression) {
  std::string out;
  for (std::size_t at = 0; at < expression.size();) {
    if (expression[at] == '[') {
      at += _copy_bracket(expression.substr(at), out);
    } else {
      const std::size_t size = expression[at] == '\\' && at + 1 < expression.size() ? 2 : 1;
      out += expression.substr(at, size);
      at += size;
    }
  }
  return out;
}

}  // namespace colx::table
