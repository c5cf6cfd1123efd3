#include "rows/line_fields.h"

#include <fmt/format.h>

#include "companion/utf8.h"

namespace colx::table {

std::string shown_text(std::string_view text) {
  constexpr std::size_t longest = 40;
  std::string result = "\"";
  while (!text.empty() && result.size() < longest) {
    const Character character = first_character(text);
    if (text[0] == '\t')
      result += "\\t";
    else if (!character.is_valid || character.code < ' ')
      result += fmt::format("\\x{:02x}", static_cast<unsigned char>(text[0]));
    else
      result += printable(text.substr(0, character.size));
    text.remove_prefix(character.size);
  }
  return result + (text.empty() ? "\"" : "...\"");
}

}  // namespace colx::table
