#pragma once

// Numbers as text, fast: what a stream prints, without the stream.

#include <cstddef>
#include <cstdint>

namespace colx {

// No double has more significant digits than this in decimal.
inline constexpr std::uint32_t most_significant_digits = 1100;

// The most characters that format_general writes for a precision: sign, point, digits, leading zeros, exponent.
constexpr std::size_t longest_general(std::uint32_t precision) {
  return std::size_t{precision < most_significant_digits ? precision : most_significant_digits} + 32;
}

// Writes a double as a stream in its default notation does with that precision, not-a-number and infinities included,
// and returns the end of the text. The value is rounded exactly, to even when it lies halfway. `out` must have room for
// longest_general(precision) characters. A precision of 2^31 and more counts as none given, that is, as 6.
//
// Up to a precision of 17, numbers up to 2^63 that are not very small are converted by exact integer arithmetic; that
// is nearly everything that is ever written, at a fraction of the cost of std::to_chars, which does the rest.
char* format_general(char* out, double x, std::uint32_t precision);

// Writes a number in plain decimal and returns the end of the text.
char* format_unsigned(char* out, std::uint32_t number);
char* format_unsigned(char* out, std::uint64_t number);

}  // namespace colx
