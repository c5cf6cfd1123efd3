#include "table/text_writers.h"

#include <string_view>

namespace colx::table {

namespace {

// A pipe table; characters that Markdown would take for its own are escaped.
class MarkdownWriter : public Writer {
 public:
  using Writer::Writer;

  void begin(std::span<const Heading> columns) override {
    out() << '|';
    for (const Heading& column : columns)
      _write(column.name);
    out() << "\n|";
    for (const Heading& column : columns)
      out() << (column.type == ValueType::text ? "---|" : "---:|");
    out() << '\n';
    out().end_row();
  }

  void row(std::span<const Field> fields) override {
    out() << '|';
    for (const Field& field : fields)
      _write(shown(field));
    out() << '\n';
    out().end_row();
  }

 private:
  void _write(std::string_view text) {
    out() << ' ';
    for (const char c : text) {
      if (std::string_view("\\|`*_{}[]<>~&$").find(c) != std::string_view::npos) out() << '\\';
      out() << c;
    }
    out() << " |";
  }
};

}  // namespace

std::unique_ptr<Writer> make_markdown_writer(Output& output, const Look& look) {
  return std::make_unique<MarkdownWriter>(output, look);
}

}  // namespace colx::table
