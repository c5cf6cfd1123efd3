#pragma once

// How records keep a word: its lemma and tag in one 32-bit number.

#include <cstdint>

namespace colx {

// Packing of a lemma index (24 bits) and a tag index (8 bits) into one 32-bit word.
struct TaggedLemma {
  static constexpr std::uint32_t _lemma_bits_mask = 0xFFFFFF;
  static constexpr unsigned _last_bit_index = 3;  // the byte that holds the tag

  static constexpr std::uint32_t pack(std::uint32_t lemma, std::uint8_t tag) {
    return (lemma & _lemma_bits_mask) | (std::uint32_t{tag} << (8 * _last_bit_index));
  }
  static constexpr std::uint32_t lemma(std::uint32_t packed) { return packed & _lemma_bits_mask; }
  static constexpr std::uint8_t tag(std::uint32_t packed) {
    return static_cast<std::uint8_t>(packed >> (8 * _last_bit_index));
  }
};

}  // namespace colx
