#pragma once

// The HTML around the data of a report.

#include <string>
#include <string_view>
#include <vector>

#include "companion/output.h"
#include "report/column.h"

namespace colx::report {

// What a report is made of.
struct Content {
  std::string title;
  std::string meta;  // JSON that may stand in a script element
  std::vector<Column> columns;
  std::vector<Column> examples;  // none: the file has no element for them
};

// A text that may stand in an element or an attribute. Control characters and bytes that are no UTF-8 become U+FFFD.
std::string html_text(std::string_view text);

// Writes the whole file.
void write_html(const Content& content, Output& output);

}  // namespace colx::report
