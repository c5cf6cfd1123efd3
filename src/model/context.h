#pragma once

// The words seen around the occurrences of an N-gram. Narrow contexts are the immediate neighbours of a whole
// occurrence, wide ones the words of the context window; both stand in one list, so that a word may appear twice in it.
//
// The list of an N-gram is ordered by non-increasing frequency; of equal ones, that which reached the frequency first
// stands in front. Keeping that order, or even finding a word, at every sighting would cost the length of the list each
// time. So sightings are only noted down, behind the list as it was, and folded into it when the memory is full or the
// list is to be read: a word moves to where its new frequency and the moment of its last sighting put it, which is
// where sighting by sighting it would have come to stand. A sighting costs a constant on average.

#include <cstddef>
#include <cstdint>
#include <span>

#include "corpus/tagged_lemma.h"

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

// The context words of one N-gram, by way of a handle that stands, packed and unaligned, in the N-gram's record. The
// words themselves are in memory that all lists share, which lives as long as the process: 4 bytes for a word seen once
// or noted, 8 for one seen more often.
class ContextList {
 public:
  static constexpr std::size_t handle_size = 12;  // in bytes

  // Makes the handle of an empty list.
  static void clear(unsigned char* handle);

  explicit ContextList(unsigned char* handle) : _handle(handle) {}

  // Notes sightings of words in their order, each packed as in TaggedLemma. Throws std::bad_alloc.
  void add_wide(std::span<const std::uint32_t> tagged_lemmas);
  void add_narrow(std::uint32_t tagged_lemma);

  // Loads the words into the cache.
  void prefetch() const;

  // Returns the list with all that has been noted folded into it. Valid until anything is done with any list.
  std::span<const PartOfContext> parts() const;

 private:
  unsigned char* _handle;
};

}  // namespace colx
