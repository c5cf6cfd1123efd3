#pragma once

// Occurrences on their way to the store: some hundred are collected and then counted type by type, so that the memory
// for all of them can be asked for before any of it is needed.

#include <array>
#include <cstddef>
#include <cstdint>

#include "base/config.h"
#include "model/ngram.h"
#include "util/hashing.h"

namespace colx {

// The strong hash of one member of an N-gram at a position, counted from 0. The hash of a pattern is the sum of those
// of its members.
inline std::uint64_t member_hash(NGram::Member member, unsigned position) {
  return mix(member.bits() ^ hash_keys[position], hash_keys[position] ^ hash_keys[7]);
}

// The members of up to `capacity` occurrences and their hashes, by position.
class OccurrenceBatch {
 public:
  static constexpr std::size_t capacity = 256;

  std::size_t size() const { return _size; }
  bool full() const { return _size == capacity; }
  void clear() { _size = 0; }

  // Makes room for another occurrence, all of whose members must then be set.
  void add() { ++_size; }
  void set_last(unsigned position, NGram::Member member) {
    _members[position][_size - 1] = member;
    _hashes[position][_size - 1] = member_hash(member, position);
  }

  NGram::Member member(std::size_t occurrence, unsigned position) const { return _members[position][occurrence]; }

  std::uint64_t hash(std::size_t occurrence, unsigned position) const { return _hashes[position][occurrence]; }

 private:
  std::array<std::array<NGram::Member, capacity>, constants::max_grammity> _members;
  std::array<std::array<std::uint64_t, capacity>, constants::max_grammity> _hashes;
  std::size_t _size = 0;
};

}  // namespace colx
