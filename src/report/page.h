#pragma once

// The fixed parts of a report, made of the files in report/page when the program is built.

#include <string_view>

namespace colx::report {

struct Page {
  std::string_view body;    // what a reader without scripts sees, and where the script puts its views
  std::string_view style;   // the content of the element
  std::string_view script;  // likewise
  // The source expressions by which the content security policy admits style and script, and nothing else.
  std::string_view style_hash;
  std::string_view script_hash;
};

extern const Page page;

}  // namespace colx::report
