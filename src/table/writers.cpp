#include "table/writers.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <utility>

#include <fmt/format.h>

#include "companion/utf8.h"

namespace colx::table {

namespace {

// TAB-separated values with a header line. The input has no TAB and no LF within its fields, so nothing is quoted.
class TsvWriter : public Writer {
 public:
  using Writer::Writer;

  void begin(std::span<const Column> columns) override {
    bool first = true;
    for (const Column& column : columns) {
      if (!std::exchange(first, false)) out() << '\t';
      out() << column.name;
    }
    out() << '\n';
    out().end_row();
  }

  void row(std::span<const Field> fields) override {
    bool first = true;
    for (const Field& field : fields) {
      if (!std::exchange(first, false)) out() << '\t';
      out() << text_of(field);
    }
    out() << '\n';
    out().end_row();
  }
};

// Comma-separated values as in RFC 4180, with its CR LF at the end of a line.
class CsvWriter : public Writer {
 public:
  using Writer::Writer;

  void begin(std::span<const Column> columns) override {
    bool first = true;
    for (const Column& column : columns) {
      if (!std::exchange(first, false)) out() << ',';
      out() << column.name;
    }
    _end_line();
  }

  void row(std::span<const Field> fields) override {
    bool first = true;
    for (const Field& field : fields) {
      if (!std::exchange(first, false)) out() << ',';
      _write(text_of(field));
    }
    // A line without anything would be taken for no record at all.
    if (fields.size() == 1 && text_of(fields[0]).empty()) out() << "\"\"";
    _end_line();
  }

 private:
  void _write(std::string_view text) {
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
      out() << text;
      return;
    }
    out() << '"';
    for (const char c : text) {
      if (c == '"') out() << '"';
      out() << c;
    }
    out() << '"';
  }

  void _end_line() {
    out() << "\r\n";
    out().end_row();
  }
};

// One JSON object a line. Bytes that are no UTF-8 become U+FFFD, since JSON has no other encoding.
class JsonLinesWriter : public Writer {
 public:
  using Writer::Writer;

  void begin(std::span<const Column> columns) override {
    for (const Column& column : columns)
      _keys.push_back(fmt::format("{}\"{}\":", _keys.empty() ? "{" : ",", column.name));
  }

  void row(std::span<const Field> fields) override {
    for (std::size_t i = 0; i < fields.size(); ++i) {
      out() << _keys[i];
      if (fields[i].kind == FieldKind::text)
        _write(fields[i].content);
      else
        out() << (fields[i].kind == FieldKind::number ? fields[i].content : std::string_view("null"));
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

// A pipe table; characters that Markdown would take for its own are escaped.
class MarkdownWriter : public Writer {
 public:
  using Writer::Writer;

  void begin(std::span<const Column> columns) override {
    out() << '|';
    for (const Column& column : columns)
      _write(column.name);
    out() << "\n|";
    for (const Column& column : columns)
      out() << (column.is_text() ? "---|" : "---:|");
    out() << '\n';
    out().end_row();
  }

  void row(std::span<const Field> fields) override {
    out() << '|';
    for (const Field& field : fields)
      _write(text_of(field));
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

// Columns of equal width. The width is taken from the header and the first rows, so that memory stays constant; a later
// value that is wider pushes the rest of its line to the right.
class AlignedWriter : public Writer {
 public:
  AlignedWriter(Output& output, bool bold_header) : Writer(output), _bold_header(bold_header) {}

  void begin(std::span<const Column> columns) override {
    std::vector<std::string> header;
    for (const Column& column : columns) {
      _is_text.push_back(column.is_text());
      header.push_back(column.name);
    }
    _widths.assign(columns.size(), 0);
    _hold(std::move(header));
  }

  void row(std::span<const Field> fields) override {
    std::vector<std::string> line;
    line.reserve(fields.size());
    for (const Field& field : fields)
      line.push_back(printable(text_of(field)));
    if (_settled) {
      _write(line);
      return;
    }
    _hold(std::move(line));
    if (_held.size() > rows_measured) _settle();
  }

  void end() override { _settle(); }

 private:
  static constexpr std::size_t rows_measured = 1000;

  // Writes what was held back to measure it.
  void _settle() {
    if (!_settled && !_held.empty()) {
      if (_bold_header) out() << "\x1b[1m";
      _write(_held[0], _bold_header ? "\x1b[0m" : "");
      for (std::size_t i = 1; i < _held.size(); ++i)
        _write(_held[i]);
    }
    _held.clear();
    _settled = true;
  }

  void _hold(std::vector<std::string> line) {
    for (std::size_t i = 0; i < line.size(); ++i)
      _widths[i] = std::max(_widths[i], display_width(line[i]));
    _held.push_back(std::move(line));
  }

  void _write(const std::vector<std::string>& line, std::string_view after = "") {
    for (std::size_t i = 0; i < line.size(); ++i) {
      const std::size_t width = display_width(line[i]);
      const std::string gap(_widths[i] > width ? _widths[i] - width : 0, ' ');
      if (i != 0) out() << "  ";
      if (!_is_text[i]) out() << gap;
      out() << line[i];
      if (_is_text[i] && i + 1 != line.size()) out() << gap;
    }
    out() << after << '\n';
    out().end_row();
  }

  bool _bold_header;
  bool _settled = false;
  std::vector<bool> _is_text;
  std::vector<std::size_t> _widths;
  std::vector<std::vector<std::string>> _held;  // the header and the first rows
};

struct FormatName {
  std::string_view name;
  Format format;
};

constexpr std::array<FormatName, 6> _formats = {{{"tsv", Format::tsv},
                                                 {"csv", Format::csv},
                                                 {"jsonl", Format::jsonl},
                                                 {"markdown", Format::markdown},
                                                 {"ucs", Format::ucs},
                                                 {"table", Format::aligned}}};

}  // namespace

std::optional<Format> find_format(std::string_view name) {
  for (const FormatName& format : _formats)
    if (format.name == name) return format.format;
  return std::nullopt;
}

std::unique_ptr<Writer> make_writer(Format format, Output& output, bool bold_header) {
  switch (format) {
    case Format::csv:
      return std::make_unique<CsvWriter>(output);
    case Format::jsonl:
      return std::make_unique<JsonLinesWriter>(output);
    case Format::markdown:
      return std::make_unique<MarkdownWriter>(output);
    case Format::aligned:
      return std::make_unique<AlignedWriter>(output, bold_header);
    case Format::tsv:
    case Format::ucs:
      break;
  }
  return std::make_unique<TsvWriter>(output);
}

std::vector<Column> ucs_columns(std::span<const Column> columns) {
  std::vector<Column> result = {{Quantity::rank, 0, "id"},     {Quantity::lemma, 0, "l1"},
                                {Quantity::lemma, 1, "l2"},    {Quantity::frequency, 0, "f"},
                                {Quantity::marginal, 0, "f1"}, {Quantity::marginal, 1, "f2"},
                                {Quantity::total, 0, "N"}};
  for (const Column& column : columns) {
    if (std::find(result.begin(), result.end(), column) != result.end()) continue;
    result.push_back(column);
    std::replace(result.back().name.begin(), result.back().name.end(), '_', '.');
  }
  return result;
}

}  // namespace colx::table
