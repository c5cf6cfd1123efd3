#pragma once

// The packed record of a distinct N-gram, or of a pattern of one in which some positions are left open: a 32-bit header
// (24-bit frequency, 7-bit type, overflow flag), then 6 bytes for each significant position, then, when contexts are
// collected, 12 bytes for the context words. Records stand in pool memory at addresses that never change.
//
// The type is a mask over the N positions: bit N - 1 - i stands for position i, counted from 0, so that the highest bit
// is the first word. Type 0 is the empty N-gram, the full type has all N bits set.
//
// A record counts to 2^24 - 1 by itself; what was carried out of full counters (once NGram::_overflows) is kept by the
// table that holds the record, and handed in here.

#include <cstdint>
#include <cstring>
#include <limits>
#include <map>
#include <span>
#include <vector>

#include "model/context.h"
#include "model/tagged_lemma.h"

namespace colx {

// The largest amount that may be carried out of a counter.
template <typename Key, typename Amount>
struct Overflow {
  static constexpr Amount _max_value = std::numeric_limits<Amount>::max();
};

// A record of 4 + 6k bytes for k members, plus 12 with contexts; it is always placed in memory of that size and needs
// no alignment. Class-wide tables depend on N and are set by init.
class NGram {
 public:
  // A significant position: the word there and how it hangs in the dependency tree. 6 bytes of a record; here in the
  // low 48 bits of a number, in the same order.
  class Member {
   public:
    constexpr Member() = default;
    constexpr Member(std::uint32_t lemma, std::uint8_t tag, std::uint8_t parent, std::uint8_t dependency)
        : _bits(TaggedLemma::pack(lemma, tag) | std::uint64_t{parent} << 32 | std::uint64_t{dependency} << 40) {}

    // Reads a member from where it stands in a record. Its two parts are joined in a register: read as one piece of
    // memory just written in two, the number would be waited for.
    static Member load(const unsigned char* bytes) {
      std::uint32_t tagged_lemma;
      std::uint16_t rest;
      std::memcpy(&tagged_lemma, bytes, sizeof tagged_lemma);
      std::memcpy(&rest, bytes + sizeof tagged_lemma, sizeof rest);
      Member member;
      member._bits = tagged_lemma | std::uint64_t{rest} << 32;
      return member;
    }
    void store(unsigned char* bytes) const { std::memcpy(bytes, &_bits, size); }

    std::uint32_t lemma() const { return TaggedLemma::lemma(static_cast<std::uint32_t>(_bits)); }
    std::uint8_t tag() const { return TaggedLemma::tag(static_cast<std::uint32_t>(_bits)); }
    // Position of the parent from 1 among all N positions, open ones included; 0 when it lies outside the N-gram.
    std::uint8_t parent() const { return static_cast<std::uint8_t>(_bits >> 32); }
    // Relation code; that of "Head" when the parent lies outside.
    std::uint8_t dependency() const { return static_cast<std::uint8_t>(_bits >> 40); }
    std::uint64_t bits() const { return _bits; }

    friend bool operator==(const Member&, const Member&) = default;

    static constexpr std::size_t size = 6;  // in a record, in bytes

   private:
    std::uint64_t _bits = 0;
  };

  static constexpr std::uint32_t _max_frequency = 0xFFFFFF;
  static constexpr std::uint8_t _overflow_flag_mask = 0x80;
  static constexpr std::uint8_t _type_mask = 0x7F;
  static constexpr unsigned _last_bit_index = 3;  // the header byte that holds type and flag

  static bool _context_tracing_on;
  static std::uint8_t _full_ngram_type;
  static std::uint8_t _types_count;
  static std::vector<std::uint8_t> _members_count;         // by type
  static std::vector<std::uint32_t> _ngrams_memory_sizes;  // in bytes, by number of members

  // What was carried out of full counters, by record.
  using Overflows = std::map<const NGram*, std::uint32_t>;

  // Sets the class-wide tables from the settings; to be called before any record is built.
  static void init();

  // Tells whether position i, counted from 0, is significant in records of the given type.
  static bool significant(std::uint8_t type, unsigned position);

  // Builds a record with frequency 1 and no contexts in memory of its size. There is one member for each significant
  // position of the type, in ascending position.
  static NGram* build(void* memory, std::uint8_t type, std::span<const Member> members);

  NGram(const NGram&) = delete;
  NGram& operator=(const NGram&) = delete;

  // Adds one occurrence. A full counter starts again at 1 and what it held is carried over, where it saturates at the
  // largest 32-bit number.
  void inc(Overflows& overflows) {
    const std::uint32_t header = _load_header();
    if ((header & _max_frequency) < _max_frequency) {
      _store_header(header + 1);
    } else {
      add(1, overflows);
    }
  }

  // Adds a number of occurrences; the record and what was carried are then as after so many calls of inc.
  void add(std::uint32_t occurrences, Overflows& overflows);

  // The number of occurrences, carried ones included; saturates at the largest 32-bit number.
  std::uint32_t frequency(const Overflows& overflows) const {
    const std::uint32_t header = _load_header();
    return (header >> 31) == 0 ? header & _max_frequency : _carried_frequency(overflows);
  }

  std::uint8_t type() const { return _header[_last_bit_index] & _type_mask; }

  // The members in ascending position, `members_count` of them.
  Member member(unsigned i) const { return Member::load(_after_header() + i * Member::size); }
  unsigned members_count() const { return _members_count[type()]; }

  // The handle of the context words; only when contexts are collected and the type is not 0.
  unsigned char* context_handle() { return _after_header() + members_count() * Member::size; }

 private:
  NGram() = default;

  std::uint32_t _load_header() const {
    std::uint32_t header;
    std::memcpy(&header, _header, sizeof header);
    return header;
  }
  void _store_header(std::uint32_t header) { std::memcpy(_header, &header, sizeof header); }
  // What follows the header is no part of the object: it is reached through the memory in which `build` has placed it.
  unsigned char* _after_header() { return reinterpret_cast<unsigned char*>(this + 1); }
  const unsigned char* _after_header() const { return reinterpret_cast<const unsigned char*>(this + 1); }
  std::uint32_t _carried_frequency(const Overflows& overflows) const;

  unsigned char _header[4];  // little-endian
};

}  // namespace colx
