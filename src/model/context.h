#pragma once

// The words seen around the occurrences of an N-gram. Narrow contexts are the immediate neighbours of a whole
// occurrence, wide ones the words of the context window; both stand in one list, so that a word may appear twice in it.

#include <cstdint>
#include <vector>

#include "corpus/tagged_lemma.h"

namespace colx {

// One context word of one N-gram: how often it was seen, in which of the two roles.
class PartOfContext {
 public:
  static constexpr std::uint32_t _max_frequency = 0x7FFFFFFF;
  static constexpr std::uint32_t _narrow_flag_bitmask = 0x80000000;

  // A word seen once.
  PartOfContext(std::uint32_t lemma, std::uint8_t tag, bool narrow)
      : _frequency_and_flag(1 | (narrow ? _narrow_flag_bitmask : 0)), _tagged_lemma(TaggedLemma::pack(lemma, tag)) {}

  // Counts one more sighting; at _max_frequency the count stays.
  void inc() {
    if (frequency() < _max_frequency) ++_frequency_and_flag;
  }

  std::uint32_t frequency() const { return _frequency_and_flag & _max_frequency; }
  bool narrow() const { return (_frequency_and_flag & _narrow_flag_bitmask) != 0; }
  std::uint32_t lemma() const { return TaggedLemma::lemma(_tagged_lemma); }
  std::uint8_t tag() const { return TaggedLemma::tag(_tagged_lemma); }

  // The same word in the same role; how often it was seen does not matter.
  friend bool operator==(const PartOfContext& a, const PartOfContext& b) {
    return a._tagged_lemma == b._tagged_lemma && a.narrow() == b.narrow();
  }

 private:
  std::uint32_t _frequency_and_flag;
  std::uint32_t _tagged_lemma;
};

// The context words of one N-gram by non-increasing frequency; of equal ones, that which reached the frequency first
// stays in front. Counting a sighting costs a search from the front, where the frequent words are.
class ContextList {
 public:
  // Counts one sighting of a word given with frequency 1.
  void add(const PartOfContext& part);

  const std::vector<PartOfContext>& parts() const { return _parts; }

 private:
  std::vector<PartOfContext> _parts;
};

}  // namespace colx
