#pragma once

// The parts of a workbook that are the same for every table, or nearly so, and texts as its XML has them.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace colx::table {

// Numbers of the formats in `workbook_styles`.
enum class CellStyle { number = 0, header = 1, text = 2 };

extern const std::string_view workbook_content_types;
extern const std::string_view workbook_relations;        // of the package
extern const std::string_view workbook_sheet_relations;  // of the workbook
extern const std::string_view workbook_styles;

// The workbook, with a sheet of that name, whose filter is over `range`, such as $A$1:$C$9; empty: there is none.
std::string workbook_part(std::string_view sheet, std::string_view range);

// The letters of a column, from 0.
std::string column_letters(std::size_t column);

// Appends a text as XML has it. Bytes that are no UTF-8 become U+FFFD; what XML cannot have, and what would be taken
// for an escape, is escaped as spreadsheets do: _x0001_. Returns the length of the text as spreadsheets count it, in
// UTF-16.
std::size_t append_xml_text(std::string& xml, std::string_view text);

}  // namespace colx::table
