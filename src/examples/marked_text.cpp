#include "examples/marked_text.h"

#include <wctype.h>

#include <algorithm>
#include <array>

#include "companion/utf8.h"

namespace colx::examples {

namespace {

// By the mark of a character.
constexpr std::array<std::string_view, 3> marks = {"\x1b[0m", "\x1b[0;1;31m", "\x1b[0;1;4;31m"};

bool _is_right_to_left(char32_t code) {
  return (code >= 0x590 && code < 0x900) || (code >= 0xFB1D && code < 0xFE00) || (code >= 0xFE70 && code < 0xFF00) ||
         (code >= 0x10800 && code < 0x11000) || (code >= 0x1E800 && code < 0x1F000);
}

}  // namespace

void MarkedText::_append(std::string_view text, Mark mark) {
  const std::string shown = printable(text);
  std::string_view rest = shown;
  while (!rest.empty()) {
    const std::string_view character = rest.substr(0, first_character(rest).size);
    _characters.push_back({static_cast<std::uint32_t>(_bytes.size()), static_cast<std::uint8_t>(character.size()),
                           static_cast<std::uint8_t>(display_width(character)), mark});
    _bytes += character;
    rest.remove_prefix(character.size());
  }
}

void MarkedText::append(const Piece& piece) {
  const bool in_brackets = piece.is_member && _marks == Marks::brackets;
  if (in_brackets) append("[");
  _append(piece.text, piece.is_top ? Mark::top : piece.is_member ? Mark::member : Mark::none);
  if (in_brackets) append("]");
}

std::size_t MarkedText::width(std::size_t begin, std::size_t end) const {
  std::size_t columns = 0;
  for (std::size_t i = begin; i < end; ++i)
    columns += _characters[i].width;
  return columns;
}

std::size_t MarkedText::end_of(std::size_t begin, std::size_t columns) const {
  std::size_t end = begin;
  for (; end < size() && _characters[end].width <= columns; ++end)
    columns -= _characters[end].width;
  return end;
}

std::size_t MarkedText::begin_of(std::size_t end, std::size_t columns) const {
  std::size_t begin = end;
  for (; begin > 0 && _characters[begin - 1].width <= columns; --begin)
    columns -= _characters[begin - 1].width;
  // A mark belongs to the character before it.
  while (begin > 0 && begin < end && _characters[begin].width == 0)
    ++begin;
  return begin;
}

std::size_t MarkedText::end_of_line(std::size_t begin, std::size_t columns) const {
  const std::size_t end = std::max(end_of(begin, columns), begin + 1);
  if (end >= size() || _is_blank(end)) return std::min(end, size());
  for (std::size_t i = end; i > begin + 1; --i)
    if (_is_blank(i - 1) || (_characters[i - 1].width == 2 && _characters[i].width == 2)) return i;
  return end;
}

std::size_t MarkedText::behind_blanks(std::size_t begin) const {
  while (begin < size() && _is_blank(begin))
    ++begin;
  return begin;
}

std::size_t MarkedText::before_blanks(std::size_t begin, std::size_t end) const {
  while (end > begin && _is_blank(end - 1))
    --end;
  return end;
}

bool MarkedText::is_right_to_left() const {
  for (const Shown& character : _characters) {
    const char32_t code = first_character(std::string_view(_bytes).substr(character.begin)).code;
    if (_is_right_to_left(code)) return true;
    if (::iswalpha(static_cast<wint_t>(code)) != 0) return false;
  }
  return false;
}

void MarkedText::write(Output& output, std::size_t begin, std::size_t end) const {
  Mark last = Mark::none;
  for (std::size_t i = begin; i < end; ++i) {
    const Shown& character = _characters[i];
    if (_marks == Marks::colour && character.mark != last) {
      last = character.mark;
      output << marks[static_cast<std::size_t>(last)];
    }
    output << std::string_view(_bytes).substr(character.begin, character.size);
  }
  if (last != Mark::none) output << marks[0];
}

}  // namespace colx::examples
