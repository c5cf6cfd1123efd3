#pragma once

// Runs of bytes that are mostly shorter than what a call of the library costs: lemmas, tags and names. Nothing here
// reads or writes beyond the runs.

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace colx {

// Loads up to 8 bytes into a word, the rest being 0, without looking beyond them.
[[gnu::always_inline]] inline std::uint64_t load_up_to_8(const char* bytes, std::size_t length) {
  std::uint64_t word = 0;
  if (length >= 8) {
    std::memcpy(&word, bytes, 8);
  } else if (length >= 4) {
    std::uint32_t head;
    std::uint32_t tail;
    std::memcpy(&head, bytes, 4);
    std::memcpy(&tail, bytes + length - 4, 4);
    word = head | std::uint64_t{tail} << (8 * (length - 4));
  } else if (length > 0) {
    // Of one and two bytes some are taken twice.
    const auto byte = [&](std::size_t i) { return std::uint64_t{static_cast<unsigned char>(bytes[i])} << (8 * i); };
    word = byte(0) | byte(length / 2) | byte(length - 1);
  }
  return word;
}

// Compares two runs of bytes of the same length, most of which are short.
[[gnu::always_inline]] inline bool equal_bytes(const char* a, const char* b, std::size_t length) {
  for (; length > 8; a += 8, b += 8, length -= 8) {
    if (load_up_to_8(a, 8) != load_up_to_8(b, 8)) return false;
  }
  return load_up_to_8(a, length) == load_up_to_8(b, length);
}

// Copies a run of bytes, most of which are short, and returns the end of the copy. The runs must not overlap.
[[gnu::always_inline]] inline char* copy_bytes(char* to, const char* from, std::size_t length) {
  if (length >= 8) {
    // Whole words, the last of which may take some bytes twice.
    const std::uint64_t last = load_up_to_8(from + length - 8, 8);
    for (std::size_t i = 0; i + 8 < length; i += 8)
      std::memcpy(to + i, from + i, 8);
    std::memcpy(to + length - 8, &last, 8);
  } else if (length >= 4) {
    std::uint32_t head;
    std::uint32_t tail;
    std::memcpy(&head, from, 4);
    std::memcpy(&tail, from + length - 4, 4);
    std::memcpy(to, &head, 4);
    std::memcpy(to + length - 4, &tail, 4);
  } else if (length > 0) {
    const char middle = from[length / 2];
    const char last = from[length - 1];
    to[0] = from[0];
    to[length / 2] = middle;
    to[length - 1] = last;
  }
  return to + length;
}

}  // namespace colx
