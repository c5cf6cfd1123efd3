#pragma once

// A word seen around an N-gram, as lists of context words hold it and the contexts file shows it.

#include <cstdint>

#include "model/tagged_lemma.h"

namespace colx {

// One context word of one N-gram: how often it was seen, in which of the two roles.
class PartOfContext {
 public:
  static constexpr std::uint32_t _max_frequency = 0x7FFFFFFF;
  static constexpr std::uint32_t _narrow_flag_bitmask = 0x80000000;

  // A word, packed as in TaggedLemma, that was seen `frequency` times.
  PartOfContext(std::uint32_t tagged_lemma, bool narrow, std::uint32_t frequency = 1)
      : _frequency_and_flag(frequency | (narrow ? _narrow_flag_bitmask : 0)), _tagged_lemma(tagged_lemma) {}

  // Counts one more sighting; at _max_frequency the count stays. Returns whether it rose.
  bool inc() {
    if (frequency() == _max_frequency) return false;
    ++_frequency_and_flag;
    return true;
  }

  std::uint32_t frequency() const { return _frequency_and_flag & _max_frequency; }
  bool narrow() const { return (_frequency_and_flag & _narrow_flag_bitmask) != 0; }
  std::uint32_t tagged_lemma() const { return _tagged_lemma; }
  std::uint32_t lemma() const { return TaggedLemma::lemma(_tagged_lemma); }
  std::uint8_t tag() const { return TaggedLemma::tag(_tagged_lemma); }

  // The same for the same word in the same role, and for nothing else.
  std::uint64_t key() const {
    return std::uint64_t{_tagged_lemma} << 32 | (_frequency_and_flag & _narrow_flag_bitmask);
  }
  friend bool operator==(const PartOfContext& a, const PartOfContext& b) { return a.key() == b.key(); }

 private:
  std::uint32_t _frequency_and_flag;
  std::uint32_t _tagged_lemma;
};

}  // namespace colx
