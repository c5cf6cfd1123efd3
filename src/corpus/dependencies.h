#pragma once

// The analytical functions and their one-byte codes. The codes are part of the packed N-gram record and of its hash, so
// their order is fixed.

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace colx {

namespace dependency {
// Codes of "Head" and "Undef"; both are 0 until a name has been converted for the first time.
extern std::uint8_t head;
extern std::uint8_t undef;
}  // namespace dependency

// Number of relation codes; they run from 0.
inline constexpr unsigned dependencies_count = 118;

// Converts a relation name to its code, byte by byte and case-sensitive; an unknown name gives the code of "Undef".
std::uint8_t string2dependency(const std::string& name);

// Converts a code that string2dependency gave back to its name, which lives as long as the process and has a zero
// behind it.
std::string_view dependency2cstring(std::uint8_t code);

// Builds the map from names to codes and sets the two special codes.
std::map<std::string, std::uint8_t> _init_str2dep();

}  // namespace colx
