#include "table/bracket_ranges.h"

#include <algorithm>
#include <cstddef>

#include <fmt/format.h>

#include "companion/errors.h"
#include "table/utf8.h"

namespace colx::table {

namespace {

// Appends the characters from the one behind `first` up to `last`.
void _append_rest(std::string& out, char32_t first, char32_t last) {
  for (char32_t code = first + 1; code <= last; ++code)
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
  std::size_t at = 1;
  if (text.substr(at).starts_with('^')) ++at;
  if (text.substr(at).starts_with(']')) ++at;
  out += text.substr(0, at);
  while (at < text.size() && text[at] != ']') {
    const std::string_view rest = text.substr(at);
    if (const std::size_t size = _class_size(rest); size > 0) {
      out += rest.substr(0, size);
      at += size;
      continue;
    }
    const Character first = first_character(rest);
    out += rest.substr(0, first.size);
    at += first.size;
    const std::string_view behind = text.substr(at);
    if (behind.size() < 2 || behind[0] != '-' || behind[1] == ']' || _class_size(behind.substr(1)) > 0) continue;
    const Character last = first_character(behind.substr(1));
    const std::string_view range = rest.substr(0, first.size + 1 + last.size);
    if (!first.is_valid || !last.is_valid || std::max(first.code, last.code) < 0x80) {
      out += range.substr(first.size);
    } else if (last.code < first.code) {
      throw usage_error(fmt::format("the range {} of a regular expression runs backwards", range));
    } else {
      _append_rest(out, first.code, last.code);
    }
    at += 1 + last.size;
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
