#pragma once

// Ranges of letters outside ASCII in regular expressions.

#include <string>
#include <string_view>

namespace colx::table {

// Writes the characters of such a range out, as in [a-cабв] for [a-cа-в], because the regular expressions of the C
// library know them for ASCII only. Everything else stays as it is. Throws usage_error for a range that runs backwards.
std::string with_ranges_written_out(std::string_view expression);

}  // namespace colx::table
