#pragma once

// Numbers as bytes of intermediate files: small ones short (seven bits a byte, the lowest first, the highest bit set on
// all but the last byte), or of a fixed size, little-endian.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace colx {

static_assert(std::endian::native == std::endian::little, "intermediate files are little-endian");

// The most bytes of a short number.
inline constexpr std::size_t longest_short_number = 10;

// Writes a number in short form and returns the end. There must be room for longest_short_number bytes.
inline char* put_short(char* to, std::uint64_t number) {
  for (; number >= 0x80; number >>= 7)
    *to++ = static_cast<char>(number | 0x80);
  *to++ = static_cast<char>(number);
  return to;
}

inline void append_short(std::string& to, std::uint64_t number) {
  char bytes[longest_short_number];
  to.append(bytes, static_cast<std::size_t>(put_short(bytes, number) - bytes));
}

// Bytes that put_short writes.
constexpr std::size_t short_size(std::uint64_t number) {
  return number < 0x80 ? 1 : (static_cast<std::size_t>(std::bit_width(number)) + 6) / 7;
}

// Reads a number in short form and moves `from` behind it. The bytes have been checked to be what was written.
inline std::uint64_t get_short(const char*& from) {
  auto byte = static_cast<unsigned char>(*from++);
  if (byte < 0x80) return byte;
  std::uint64_t number = byte & 0x7F;
  for (unsigned shift = 7;; shift += 7) {
    byte = static_cast<unsigned char>(*from++);
    number |= std::uint64_t{byte & 0x7FU} << shift;
    if (byte < 0x80) return number;
  }
}

// The same for numbers of a fixed size.
template <typename Number>
void append_fixed(std::string& to, Number number) {
  char bytes[sizeof number];
  std::memcpy(bytes, &number, sizeof number);
  to.append(bytes, sizeof number);
}

template <typename Number>
Number get_fixed(const char*& from) {
  Number number;
  std::memcpy(&number, from, sizeof number);
  from += sizeof number;
  return number;
}

}  // namespace colx
