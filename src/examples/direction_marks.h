#pragma once

// Characters by which a terminal keeps texts of both directions apart, in UTF-8.

#include <string_view>

namespace colx::examples {

namespace direction_bytes {
// Byte by byte, as a text with one half of a pair would look wrong wherever this source is shown.
inline constexpr char left_to_right[] = {'\xE2', '\x80', '\x8E'};
inline constexpr char begin_isolate[] = {'\xE2', '\x81', '\xA7'};
inline constexpr char end_isolate[] = {'\xE2', '\x81', '\xA9'};
}  // namespace direction_bytes

// U+200E, which makes a line that begins with it one from left to right.
inline constexpr std::string_view left_to_right_mark(direction_bytes::left_to_right, 3);

// U+2067 and U+2069: what stands between them is written from right to left, and keeps its place beside the rest.
inline constexpr std::string_view begin_right_to_left(direction_bytes::begin_isolate, 3);
inline constexpr std::string_view end_right_to_left(direction_bytes::end_isolate, 3);

}  // namespace colx::examples
