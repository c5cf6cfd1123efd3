#pragma once

// Numbers as text, for messages.

#include <cstdint>
#include <string>

namespace colx {

// Writes a number in general notation with at most `precision` significant digits: no trailing zeros, an exponent when
// it is very large or very small.
std::string double2str(double x, std::uint32_t precision);

// Writes a number in plain decimal.
std::string unsigned2str(std::uint32_t u);

}  // namespace colx
