#include "companion/utf8.h"

#include <wchar.h>

#include <bit>
#include <cerrno>
#include <clocale>
#include <cstdint>
#include <new>

#include "util/short_runs.h"

namespace colx {

namespace {

static_assert(std::endian::native == std::endian::little, "the first byte of a text is the lowest of a number");

constexpr char32_t replacement = 0xFFFD;

bool _is_control(char32_t code) {
  return code < 0x20 || (code >= 0x7F && code < 0xA0) || (code >= 0x202A && code <= 0x202E) ||
         (code >= 0x2066 && code <= 0x2069) || code == 0xFEFF;
}

}  // namespace

Character first_character(std::string_view text) {
  const auto byte = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
  const unsigned first = byte(0);
  if (first < 0x80) return {first, 1};
  const std::size_t size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  constexpr Character invalid{replacement, 1, false};
  if (first < 0xC2 || first > 0xF4) return invalid;
  char32_t code = first & (0x7FU >> size);
  for (std::size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xC0U) != 0x80) return invalid;
    code = code << 6 | (byte(i) & 0x3FU);
  }
  const bool overlong = (size == 3 && code < 0x800) || (size == 4 && code < 0x10000);
  if (overlong || (code >= 0xD800 && code < 0xE000) || code > 0x10FFFF) return invalid;
  return {code, size};
}

bool is_utf8(std::string_view text) {
  // Characters of two and three bytes, of which most other text is made, are told by their first byte and those that
  // continue it.
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

std::string as_utf8(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const Character character = first_character(text);
    append_character(result, character.code);
    text.remove_prefix(character.size);
  }
  return result;
}

void append_character(std::string& text, char32_t code) {
  const auto append = [&](char32_t byte) { text += static_cast<char>(byte); };
  if (code < 0x80) return append(code);
  if (code < 0x800) {
    append(0xC0 | code >> 6);
  } else {
    if (code < 0x10000) {
      append(0xE0 | code >> 12);
    } else {
      append(0xF0 | code >> 18);
      append(0x80 | (code >> 12 & 0x3F));
    }
    append(0x80 | (code >> 6 & 0x3F));
  }
  append(0x80 | (code & 0x3F));
}

std::string printable(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const Character character = first_character(text);
    if (!character.is_valid || _is_control(character.code))
      result += '?';
    else
      result += text.substr(0, character.size);
    text.remove_prefix(character.size);
  }
  return result;
}

std::size_t display_width(std::string_view text) {
  std::size_t width = 0;
  while (!text.empty()) {
    const Character character = first_character(text);
    // Negative for what the locale does not know; such a character is shown somehow, most likely in one column.
    const int columns = character.code < 0x80 ? 1 : ::wcwidth(static_cast<wchar_t>(character.code));
    width += columns < 0 ? 1 : static_cast<std::size_t>(columns);
    text.remove_prefix(character.size);
  }
  return width;
}

bool use_utf8_characters() {
  errno = 0;
  if (std::setlocale(LC_CTYPE, "C.UTF-8") != nullptr) return true;
  if (errno == ENOMEM) throw std::bad_alloc();
  return false;
}

}  // namespace colx
