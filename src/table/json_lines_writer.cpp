#include "table/text_writers.h"

#include <string>
#include <vector>

#include <fmt/format.h>

#include "companion/utf8.h"

namespace colx::table {

namespace {

// One JSON object a line. Bytes that are no UTF-8 become U+FFFD, since JSON has no other encoding.
class JsonLinesWriter : public Writer {
 public:
  using Writer::Writer;

  void begin(std::span<const Heading> columns) override {
    for (const Heading& column : columns)
      _keys.push_back(fmt::format("{}\"{}\":", _keys.empty() ? "{" : ",", column.name));
  }

  void row(std::span<const Field> fields) override {
    for (std::size_t i = 0; i < fields.size(); ++i) {
      out() << _keys[i];
      if (fields[i].kind == FieldKind::text)
        _write(fields[i].content);
      else if (fields[i].kind == FieldKind::number)
        out() << fields[i].content;
      else if (look().special_as_text)
        out() << '"' << text_of(fields[i]) << '"';
      else
        out() << "null";
    }
    out() << "}\n";
    out().end_row();
  }

 private:
  void _write(std::string_view text) {
    out() << '"';
    while (!text.empty()) {
      const Character character = first_character(text);
      if (!character.is_valid)
        out() << "\xEF\xBF\xBD";
      else if (character.size > 1)
        out() << text.substr(0, character.size);
      else
        _write_ascii(text[0]);
      text.remove_prefix(character.size);
    }
    out() << '"';
  }

  void _write_ascii(char c) {
    if (c == '"' || c == '\\')
      out() << '\\' << c;
    else if (static_cast<unsigned char>(c) < 0x20)
      out() << fmt::format("\\u{:04x}", static_cast<unsigned>(c));
    else
      out() << c;
  }

  std::vector<std::string> _keys;
};

}  // namespace

std::unique_ptr<Writer> make_json_lines_writer(Output& output, const Look& look) {
  return std::make_unique<JsonLinesWriter>(output, look);
}

}  // namespace colx::table
