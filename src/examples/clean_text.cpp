#include "examples/clean_text.h"

#include <algorithm>

#include "companion/utf8.h"

namespace colx::examples {

std::string clean_text(std::string_view text) {
  std::string clean = is_utf8(text) ? std::string(text) : as_utf8(text);
  std::replace_if(
      clean.begin(), clean.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == '\x7F'; }, ' ');
  return clean;
}

}  // namespace colx::examples
