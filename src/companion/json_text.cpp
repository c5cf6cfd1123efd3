#include "companion/json_text.h"

#include <fmt/format.h>

#include "companion/utf8.h"

namespace colx {

void append_json_text(std::string& json, std::string_view text) {
  json += '"';
  while (!text.empty()) {
    const Character character = first_character(text);
    if (!character.is_valid)
      append_character(json, character.code);
    else if (character.code == '"' || character.code == '\\')
      json.append("\\").append(text, 0, 1);
    else if (character.code < 0x20)
      json += fmt::format("\\u{:04x}", static_cast<unsigned>(character.code));
    else
      json += text.substr(0, character.size);
    text.remove_prefix(character.size);
  }
  json += '"';
}

}  // namespace colx
