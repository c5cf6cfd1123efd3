#pragma once

// Texts for formats in which a line end or a TAB would end something.

#include <string>
#include <string_view>

namespace colx::examples {

// A text without control characters, for which blanks stand, in UTF-8.
std::string clean_text(std::string_view text);

}  // namespace colx::examples
