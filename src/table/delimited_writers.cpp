#include "table/text_writers.h"

#include <utility>

namespace colx::table {

namespace {

// TAB-separated values with a header line. The input has no TAB and no LF within its fields, so nothing is quoted.
class TsvWriter : public Writer {
 public:
  using Writer::Writer;

  void begin(std::span<const Heading> columns) override {
    bool first = true;
    for (const Heading& column : columns) {
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
      out() << shown(field);
    }
    out() << '\n';
    out().end_row();
  }
};

// Comma-separated values as in RFC 4180, with its CR LF at the end of a line.
class CsvWriter : public Writer {
 public:
  using Writer::Writer;

  void begin(std::span<const Heading> columns) override {
    bool first = true;
    if (look().byte_order_mark) out() << "\xEF\xBB\xBF";
    for (const Heading& column : columns) {
      if (!std::exchange(first, false)) out() << ',';
      out() << column.name;
    }
    _end_line();
  }

  void row(std::span<const Field> fields) override {
    bool first = true;
    for (const Field& field : fields) {
      if (!std::exchange(first, false)) out() << ',';
      _write(shown(field));
    }
    // A line without anything would be taken for no record at all.
    if (fields.size() == 1 && shown(fields[0]).empty()) out() << "\"\"";
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

}  // namespace

std::unique_ptr<Writer> make_tsv_writer(Output& output, const Look& look) {
  return std::make_unique<TsvWriter>(output, look);
}

std::unique_ptr<Writer> make_csv_writer(Output& output, const Look& look) {
  return std::make_unique<CsvWriter>(output, look);
}

}  // namespace colx::table
