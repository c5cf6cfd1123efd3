#pragma once

// Characters of UTF-8, and what a terminal makes of them.

#include <cstddef>
#include <string>
#include <string_view>

namespace colx {

// The character at the beginning of a text that is not empty.
struct Character {
  char32_t code = 0;     // U+FFFD where there is none
  std::size_t size = 1;  // in bytes
  bool is_valid = true;
};
Character first_character(std::string_view text);

// Whether a text is UTF-8 throughout, and a copy in which every byte that is none has become U+FFFD.
bool is_utf8(std::string_view text);
std::string as_utf8(std::string_view text);

// Appends a code point.
void append_character(std::string& text, char32_t code);

// The text as it can be sent to a terminal: control characters, marks that turn the direction of writing, byte order
// marks and bytes that are no UTF-8 become '?'.
std::string printable(std::string_view text);

// How many columns of a terminal a printable text takes: combining marks none, wide characters two.
std::size_t display_width(std::string_view text);

// Makes the characters of the C library, such as those of regular expressions, those of UTF-8 wherever the program
// runs. False when the system has no such locale. Throws std::bad_alloc.
bool use_utf8_characters();

}  // namespace colx
