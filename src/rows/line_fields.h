#pragma once

// Lines of the files that ngrex writes, taken apart into fields.

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <system_error>

namespace colx::table {

// The text between two places in memory.
inline std::string_view text_between(const char* begin, const char* end) {
  return {begin, static_cast<std::size_t>(end - begin)};
}

// Splits a line at its TABs and returns how many fields there are; of more than `most` only the first are kept, and
// then the number is some number above `most`.
template <std::size_t most>
std::size_t split_fields(std::string_view line, std::array<std::string_view, most>& fields) {
  std::size_t count = 0;
  const char* begin = line.data();
  const char* const end = begin + line.size();
  for (;;) {
    const void* const tab = std::memchr(begin, '\t', static_cast<std::size_t>(end - begin));
    const char* const field_end = tab == nullptr ? end : static_cast<const char*>(tab);
    if (count < most) fields[count] = text_between(begin, field_end);
    ++count;
    if (tab == nullptr || count > most) return count;
    begin = field_end + 1;
  }
}

// Reads a number in plain decimal without a sign or needless zeros, as ngrex writes it; false when the text is none.
inline bool parse_count(std::string_view text, std::uint64_t& value) {
  if (text.empty() || (text.size() > 1 && text[0] == '0')) return false;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size();
}

// A piece of an input as messages show it: in quotes, cut where it is long, without control characters.
std::string shown_text(std::string_view text);

}  // namespace colx::table
