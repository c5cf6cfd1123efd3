#include "table/text_writers.h"

#include <string>
#include <vector>

#include <fmt/format.h>

#include "companion/json_text.h"

namespace colx::table {

namespace {

// One JSON object a line.
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
      if (fields[i].kind == FieldKind::text) {
        _text.clear();
        append_json_text(_text, fields[i].content);
        out() << _text;
      } else if (fields[i].kind == FieldKind::number) {
        out() << fields[i].content;
      } else if (look().special_as_text) {
        out() << '"' << text_of(fields[i]) << '"';
      } else {
        out() << "null";
      }
    }
    out() << "}\n";
    out().end_row();
  }

 private:
  std::vector<std::string> _keys;
  std::string _text;  // in quotes
};

}  // namespace

std::unique_ptr<Writer> make_json_lines_writer(Output& output, const Look& look) {
  return std::make_unique<JsonLinesWriter>(output, look);
}

}  // namespace colx::table
