#include "companion/case_folding.h"

#include <wctype.h>

#include "companion/utf8.h"

namespace colx {

namespace {

constexpr char32_t _dotted_capital_i = 0x130;
constexpr char32_t _dotless_small_i = 0x131;

// Through the capital letter, which several small ones may share, as both forms of sigma do.
char32_t _folded(char32_t code) {
  if (code == _dotted_capital_i || code == _dotless_small_i) return code;
  return static_cast<char32_t>(::towlower(::towupper(static_cast<wint_t>(code))));
}

}  // namespace

std::string folded(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const Character character = first_character(text);
    if (character.is_valid)
      append_character(result, _folded(character.code));
    else
      result += text[0];
    text.remove_prefix(character.size);
  }
  return result;
}

}  // namespace colx
