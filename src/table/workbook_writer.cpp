#include "table/workbook_writer.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "companion/errors.h"
#include "companion/utf8.h"
#include "table/workbook_parts.h"
#include "table/zip_stream.h"

namespace colx::table {

namespace {

constexpr std::size_t most_rows = 1048576;  // of a sheet, the header included
constexpr std::size_t longest_text = 32767;

// What stands between the columns of a sheet and what is before them.
constexpr std::string_view sheet_head =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<worksheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main"><sheetViews><sheetView tabSelected="1" workbookViewId="0"><pane ySplit="1" topLeftCell="A2" activePane="bottomLeft" state="frozen"/><selection pane="bottomLeft"/></sheetView></sheetViews><sheetFormatPr defaultRowHeight="15"/>)";

class WorkbookWriter : public Writer {
 public:
  WorkbookWriter(Output& output, const Look& look) : Writer(output, look), _zip(output) {
    _zip.add("[Content_Types].xml", workbook_content_types);
    _zip.add("_rels/.rels", workbook_relations);
    _zip.add("xl/_rels/workbook.xml.rels", workbook_sheet_relations);
    _zip.add("xl/styles.xml", workbook_styles);
    _zip.begin("xl/worksheets/sheet1.xml");
    _zip.write(sheet_head);
  }

  void begin(std::span<const Heading> columns) override {
    for (std::size_t i = 0; i < columns.size(); ++i) {
      _letters.push_back(column_letters(i));
      _names.push_back(columns[i].name);
    }
    _widths.assign(columns.size(), 0);
    _begin_row();
    for (std::size_t i = 0; i < columns.size(); ++i)
      _text(i, columns[i].name, CellStyle::header);
    _end_row();
  }

  void row(std::span<const Field> fields) override {
    if (_rows == most_rows)
      throw output_error(fmt::format(
          "a sheet of xlsx has at most {} rows below its header, and the table has more; --top {} takes the "
          "first of them, and csv and sqlite have no limit",
          most_rows - 1, most_rows - 1));
    _begin_row();
    for (std::size_t i = 0; i < fields.size(); ++i) {
      if (fields[i].kind == FieldKind::number)
        _number(i, fields[i].content);
      else if (fields[i].kind != FieldKind::not_a_number || !look().na.empty())
        _text(i, shown(fields[i]), fields[i].kind == FieldKind::text ? CellStyle::text : CellStyle::number);
    }
    _end_row();
  }

  void end() override {
    _settle();
    _zip.write(_xml);
    _xml.clear();
    _zip.write("</sheetData>");
    std::string range;
    if (_rows > 0 && !_letters.empty()) {
      _zip.write(fmt::format(R"(<autoFilter ref="A1:{0}{1}"/><ignoredErrors><ignoredError sqref="A1:{0}{1}" )"
                             R"(numberStoredAsText="1"/></ignoredErrors>)",
                             _letters.back(), _rows));
      range = fmt::format("$A$1:${}${}", _letters.back(), _rows);
    }
    _zip.write("</worksheet>");
    _zip.end();
    _zip.add("xl/workbook.xml", workbook_part(look().flat_name.empty() ? "ngrams" : look().flat_name, range));
    _zip.finish();
  }

 private:
  static constexpr std::size_t rows_measured = 1000;
  static constexpr std::size_t piece = std::size_t{64} << 10;

  void _begin_row() {
    ++_rows;
    fmt::format_to(std::back_inserter(_xml), FMT_STRING(R"(<row r="{}">)"), _rows);
  }

  void _end_row() {
    _xml += "</row>";
    if (!_settled && _rows > rows_measured) _settle();
    if (!_settled || _xml.size() < piece) return;
    _zip.write(_xml);
    _xml.clear();
  }

  void _number(std::size_t column, std::string_view digits) {
    _measure(column, digits);
    fmt::format_to(std::back_inserter(_xml), FMT_STRING(R"(<c r="{}{}"><v>{}</v></c>)"), _letters[column], _rows,
                   digits);
  }

  void _text(std::size_t column, std::string_view text, CellStyle style) {
    _measure(column, text);
    const bool has_blank_at_edge = !text.empty() && (text.front() == ' ' || text.back() == ' ');
    fmt::format_to(std::back_inserter(_xml), FMT_STRING(R"(<c r="{}{}" s="{}" t="inlineStr"><is><t{}>)"),
                   _letters[column], _rows, static_cast<int>(style),
                   has_blank_at_edge ? R"( xml:space="preserve")" : "");
    const std::size_t length = append_xml_text(_xml, text);
    if (length > longest_text)
      throw output_error(
          fmt::format("row {}: {} has {} characters, and a cell of xlsx at most {}; csv and sqlite have "
                      "no limit",
                      _rows - 1, _names[column], length, longest_text));
    _xml += "</t></is></c>";
  }

  void _measure(std::size_t column, std::string_view text) {
    if (!_settled) _widths[column] = std::max(_widths[column], display_width(text));
  }

  // Writes what was held back to measure it, with the widths before it.
  void _settle() {
    if (_settled) return;
    _settled = true;
    constexpr std::size_t widest = 60;
    constexpr std::size_t button = 3;  // of the filter
    std::string columns;
    for (std::size_t i = 0; i < _widths.size(); ++i)
      columns += fmt::format(R"(<col min="{0}" max="{0}" width="{1}" customWidth="1"/>)", i + 1,
                             std::min(_widths[i] + button, widest));
    if (!columns.empty()) _zip.write("<cols>" + columns + "</cols>");
    _zip.write("<sheetData>");
    _zip.write(_xml);
    _xml.clear();
  }

  ZipStream _zip;
  std::vector<std::string> _letters;  // of the columns
  std::vector<std::string> _names;
  std::vector<std::size_t> _widths;
  bool _settled = false;
  std::size_t _rows = 0;  // the header included
  std::string _xml;       // not yet written
};

}  // namespace

std::unique_ptr<Writer> make_workbook_writer(Output& output, const Look& look) {
  if (output.file() == nullptr) throw usage_error("--format xlsx needs --output FILE");
  return std::make_unique<WorkbookWriter>(output, look);
}

}  // namespace colx::table
