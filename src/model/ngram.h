#pragma once

// The packed record of a distinct N-gram, or of a pattern of one in which some positions are left open: a 32-bit header
// (24-bit frequency, 7-bit type, overflow flag), then 6 bytes for each significant position, then, when contexts are
// collected, 12 bytes for the handle of the context list. Records stand in pool memory at addresses that never change.
//
// The type is a mask over the N positions: bit N - 1 - i stands for position i, counted from 0, so that the highest bit
// is the first word. Type 0 is the empty N-gram, the full type has all N bits set.

#include <cstdint>
#include <cstring>
#include <limits>
#include <map>
#include <memory>
#include <vector>

#include "model/context.h"
#include "model/member_list.h"

namespace colx {

class NGram;

// The largest amount that may be carried out of a counter.
template <typename Key, typename Amount>
struct Overflow {
  static constexpr Amount _max_value = std::numeric_limits<Amount>::max();
};

// A record of 4 + 6k bytes for k members, plus 12 with contexts; it is always placed in memory of that size and needs
// no alignment. Class-wide tables depend on N and are set by init.
class NGram {
 public:
  // A significant position: the word there and how it hangs in the dependency tree. Packed into 6 bytes.
  class Member {
   public:
    Member(std::uint32_t lemma, std::uint8_t tag, std::uint8_t parent, std::uint8_t dependency);

    std::uint32_t lemma() const { return TaggedLemma::lemma(_tagged_lemma()); }
    std::uint8_t tag() const { return TaggedLemma::tag(_tagged_lemma()); }
    // Position of the parent from 1 among all N positions, open ones included; 0 when it lies outside the N-gram.
    std::uint8_t parent() const { return _bytes[4]; }
    // Relation code; that of "Head" when the parent lies outside.
    std::uint8_t dependency() const { return _bytes[5]; }

    friend bool operator==(const Member& a, const Member& b) {
      return std::memcmp(a._bytes, b._bytes, sizeof _bytes) == 0;
    }
    // By lemma index, parent, dependency and tag index, in this order.
    friend bool operator<(const Member& a, const Member& b);

   private:
    std::uint32_t _tagged_lemma() const;

    unsigned char _bytes[6];
  };

  static constexpr std::uint32_t _max_frequency = 0xFFFFFF;
  static constexpr std::uint8_t _overflow_flag_mask = 0x80;
  static constexpr std::uint8_t _type_mask = 0x7F;
  static constexpr unsigned _last_bit_index = 3;  // the header byte that holds type and flag

  static bool _context_tracing_on;
  static std::uint8_t _full_ngram_type;
  static std::uint8_t _types_count;
  static std::vector<std::uint8_t> _members_count;          // by type
  static std::vector<std::uint32_t> _ngrams_memory_sizes;   // in bytes, by number of members
  static std::map<const NGram*, std::uint32_t> _overflows;  // what was carried out of full counters

  // Sets the class-wide tables from the settings; to be called before any record is built.
  static void init();

  // Tells whether position i, counted from 0, is significant in records of the given type.
  static bool significant(std::uint8_t type, unsigned position);

  // Builds, in memory of the record's size, the record of a type from an occurrence, with frequency 1 and no contexts.
  static NGram* build(void* memory, const MemberList& members, std::uint8_t type);

  // Builds the record of a type from one of the full type, whose frequency and overflow flag it takes over.
  static NGram* build(void* memory, const NGram& full, std::uint8_t type);

  // Builds a copy of header and members; the copy has no contexts yet.
  static NGram* build(void* memory, const NGram& other);

  NGram(const NGram&) = delete;
  NGram& operator=(const NGram&) = delete;

  // Adds one occurrence. A full counter starts again at 1 and what it held is carried to _overflows, where it saturates
  // at the largest 32-bit number.
  void inc();

  // The number of occurrences, carried ones included; saturates at the largest 32-bit number.
  std::uint32_t frequency() const;

  std::uint8_t type() const { return _header[_last_bit_index] & _type_mask; }

  // Changes the type and keeps the overflow flag.
  void _type(std::uint8_t type);

  // The members in ascending position, `members_count` of them.
  const Member* members() const { return reinterpret_cast<const Member*>(this + 1); }
  unsigned members_count() const { return _members_count[type()]; }

  // Counts one sighting of a context word. Does nothing when contexts are not collected.
  void add_to_context(const PartOfContext& part);

  // The context words of this record; none when contexts are not collected.
  const std::vector<PartOfContext>& contexts() const;

 private:
  friend class NGramStore;

  // A record of type 0 with frequency 0. What follows the header is not part of the object: it is reached through the
  // memory in which `build` has placed it.
  NGram() : _header{} {}

  static void _clear_context_tail(NGram& record);

  unsigned char* _context_tail() {
    return reinterpret_cast<unsigned char*>(this + 1) + members_count() * sizeof(Member);
  }
  const unsigned char* _context_tail() const {
    return reinterpret_cast<const unsigned char*>(this + 1) + members_count() * sizeof(Member);
  }
  std::uint32_t _counter() const;

  unsigned char _header[4];  // little-endian
};

// Orders records by type and then member by member.
bool operator<(const NGram& a, const NGram& b);

// Tells whether two records stand for the same pattern; frequency and contexts do not matter.
bool operator==(const NGram& a, const NGram& b);

// Scratch memory in which candidates are built before they are looked up.
class NGramToken {
 public:
  // Allocates room for a record of the full type; to be called after NGram::init.
  static void init();

  // Builds a record as the constructors of NGram do and returns its address, or null before init. The next call
  // overwrites it.
  static NGram* get(const MemberList& members, std::uint8_t type);
  static NGram* get(const NGram& full, std::uint8_t type);

 private:
  static std::unique_ptr<unsigned char[]> _ngram_space;
};

}  // namespace colx
