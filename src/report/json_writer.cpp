#include "report/json_writer.h"

#include <fmt/format.h>

#include "companion/utf8.h"

namespace colx::report {

std::string json_text(std::string_view text) {
  std::string result = "\"";
  while (!text.empty()) {
    const Character character = first_character(text);
    const char32_t code = character.code;
    if (code == '"' || code == '\\')
      result.append(1, '\\') += static_cast<char>(code);
    else if (code < 0x20 || code == '<' || (code >= 0x7F && code < 0xA0) || code == 0x2028 || code == 0x2029)
      result += fmt::format("\\u{:04x}", static_cast<unsigned>(code));
    else
      append_character(result, code);
    text.remove_prefix(character.size);
  }
  return result += '"';
}

JsonWriter& JsonWriter::key(std::string_view name) {
  _separate();
  _text += json_text(name) + ": ";
  _needs_comma = false;
  return *this;
}

JsonWriter& JsonWriter::_put(std::string_view written) {
  _separate();
  _text += written;
  _needs_comma = true;
  return *this;
}

JsonWriter& JsonWriter::_begin(char bracket) {
  _separate();
  _text += bracket;
  ++_depth;
  _needs_comma = false;
  return *this;
}

JsonWriter& JsonWriter::_end(char bracket) {
  _text += bracket;
  --_depth;
  _needs_comma = true;
  return *this;
}

void JsonWriter::_separate() {
  if (_needs_comma) _text += _depth == 1 ? ",\n" : ", ";
}

}  // namespace colx::report
