#include "table/text_writers.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "companion/utf8.h"

namespace colx::table {

namespace {

// Columns of equal width. The width is taken from the header and the first rows, so that memory stays constant; a later
// value that is wider pushes the rest of its line to the right.
class AlignedWriter : public Writer {
 public:
  using Writer::Writer;

  void begin(std::span<const Heading> columns) override {
    std::vector<std::string> header;
    for (const Heading& column : columns) {
      _is_text.push_back(column.type == ValueType::text);
      header.push_back(column.name);
    }
    _widths.assign(columns.size(), 0);
    _hold(std::move(header));
  }

  void row(std::span<const Field> fields) override {
    std::vector<std::string> line;
    line.reserve(fields.size());
    for (const Field& field : fields)
      line.push_back(printable(shown(field)));
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
      if (look().bold_header) out() << "\x1b[1m";
      _write(_held[0], look().bold_header ? "\x1b[0m" : "");
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

  bool _settled = false;
  std::vector<bool> _is_text;
  std::vector<std::size_t> _widths;
  std::vector<std::vector<std::string>> _held;  // the header and the first rows
};

}  // namespace

std::unique_ptr<Writer> make_aligned_writer(Output& output, const Look& look) {
  return std::make_unique<AlignedWriter>(output, look);
}

}  // namespace colx::table
