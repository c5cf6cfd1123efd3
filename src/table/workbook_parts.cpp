#include "table/workbook_parts.h"

#include <algorithm>

#include <fmt/format.h>

#include "companion/utf8.h"

namespace colx::table {

const std::string_view workbook_content_types =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types"><Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/><Default Extension="xml" ContentType="application/xml"/><Override PartName="/xl/workbook.xml" ContentType="application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml"/><Override PartName="/xl/worksheets/sheet1.xml" ContentType="application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml"/><Override PartName="/xl/styles.xml" ContentType="application/vnd.openxmlformats-officedocument.spreadsheetml.styles+xml"/></Types>)";

const std::string_view workbook_relations =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships"><Relationship Id="rId1" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument" Target="xl/workbook.xml"/></Relationships>)";

const std::string_view workbook_sheet_relations =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships"><Relationship Id="rId1" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/worksheet" Target="worksheets/sheet1.xml"/><Relationship Id="rId2" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/styles" Target="styles.xml"/></Relationships>)";

// Format 49 is that of text, which keeps a spreadsheet from making anything else of a lemma that is edited.
const std::string_view workbook_styles =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<styleSheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main"><fonts count="2"><font><sz val="11"/><name val="Calibri"/><family val="2"/></font><font><b/><sz val="11"/><name val="Calibri"/><family val="2"/></font></fonts><fills count="2"><fill><patternFill patternType="none"/></fill><fill><patternFill patternType="gray125"/></fill></fills><borders count="1"><border><left/><right/><top/><bottom/><diagonal/></border></borders><cellStyleXfs count="1"><xf numFmtId="0" fontId="0" fillId="0" borderId="0"/></cellStyleXfs><cellXfs count="3"><xf numFmtId="0" fontId="0" fillId="0" borderId="0" xfId="0"/><xf numFmtId="0" fontId="1" fillId="0" borderId="0" xfId="0" applyFont="1"/><xf numFmtId="49" fontId="0" fillId="0" borderId="0" xfId="0" applyNumberFormat="1"/></cellXfs><cellStyles count="1"><cellStyle name="Normal" xfId="0" builtinId="0"/></cellStyles></styleSheet>)";

std::string workbook_part(std::string_view sheet, std::string_view range) {
  std::string names;
  if (!range.empty())
    names = fmt::format(
        R"(<definedNames><definedName name="_xlnm._FilterDatabase" localSheetId="0" hidden="1">{}!{}</definedName></definedNames>)",
        sheet, range);
  return fmt::format(
      R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<workbook xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main" xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships"><bookViews><workbookView/></bookViews><sheets><sheet name="{}" sheetId="1" r:id="rId1"/></sheets>{}</workbook>)",
      sheet, names);
}

std::string column_letters(std::size_t column) {
  std::string letters;
  for (std::size_t rest = column + 1; rest > 0; rest = (rest - 1) / 26)
    letters.insert(letters.begin(), static_cast<char>('A' + (rest - 1) % 26));
  return letters;
}

namespace {

// Whether a text begins like an escape, such as _x0041_.
bool _looks_escaped(std::string_view text) {
  constexpr std::string_view digits = "0123456789abcdefABCDEF";
  return text.size() >= 7 && text.starts_with("_x") && text[6] == '_' &&
         std::all_of(text.begin() + 2, text.begin() + 6, [&](char c) { return digits.find(c) != digits.npos; });
}

void _append_ascii(std::string& xml, std::string_view text) {
  const char c = text[0];
  if (c == '&')
    xml += "&amp;";
  else if (c == '<')
    xml += "&lt;";
  else if (c == '>')
    xml += "&gt;";
  else if (static_cast<unsigned char>(c) < 0x20)
    xml += fmt::format("_x{:04X}_", static_cast<unsigned>(c));
  else if (c == '_' && _looks_escaped(text))
    xml += "_x005F_";
  else
    xml += c;
}

}  // namespace

std::size_t append_xml_text(std::string& xml, std::string_view text) {
  std::size_t length = 0;
  while (!text.empty()) {
    const Character character = first_character(text);
    if (character.code < 0x80)
      _append_ascii(xml, text);
    else if (character.code == 0xFFFE || character.code == 0xFFFF)
      xml += fmt::format("_x{:04X}_", static_cast<unsigned>(character.code));
    else
      append_character(xml, character.code);
    length += character.code > 0xFFFF ? 2 : 1;
    text.remove_prefix(character.size);
  }
  return length;
}

}  // namespace colx::table
