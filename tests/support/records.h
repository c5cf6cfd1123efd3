#pragma once

// Occurrences and records made by hand. What tests assume about how a record is built, stored and read stands here.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <ostream>
#include <vector>

#include "corpus/dependencies.h"
#include "corpus/word.h"
#include "model/ngram.h"
#include "model/ngrams.h"

namespace colx::test {

// Code of a relation; makes sure that the special codes are set.
inline std::uint8_t relation(const char* name) {
  return string2dependency(name);
}

// One word of an occurrence.
struct MemberSpec {
  std::uint32_t lemma = 0;
  std::uint8_t tag = 0;
  std::uint8_t parent = 0;  // place in the occurrence from 1, or 0 when it is outside
  const char* dependency = "Atr";
};

// Words and the member list that points to them.
class Occurrence {
 public:
  explicit Occurrence(const std::vector<MemberSpec>& specs) {
    std::uint16_t order = 0;
    for (const MemberSpec& spec : specs)
      _words.push_back({spec.lemma, spec.tag, ++order, spec.parent, relation(spec.dependency)});
    for (std::size_t i = 0; i < specs.size(); ++i)
      _members.emplace_back(specs[i].parent, _words.cbegin() + static_cast<std::ptrdiff_t>(i));
  }
  Occurrence(const Occurrence&) = delete;
  Occurrence& operator=(const Occurrence&) = delete;

  const MemberList& members() const { return _members; }

 private:
  std::deque<Word> _words;
  MemberList _members;
};

// A record in memory of its own, exactly as large as a record of its type, that held other bytes before.
class Record {
 public:
  Record(const std::vector<MemberSpec>& specs, std::uint8_t type)
      : Record(type, [&](void* memory) { return NGram::build(memory, Occurrence(specs).members(), type); }) {}
  Record(const NGram& full, std::uint8_t type)
      : Record(type, [&](void* memory) { return NGram::build(memory, full, type); }) {}

  static Record copy_of(const NGram& other) {
    return Record(other.type(), [&](void* memory) { return NGram::build(memory, other); });
  }

  NGram& operator*() const { return *_record; }
  NGram* operator->() const { return _record; }

  std::vector<unsigned> bytes() const { return {_memory.get(), _memory.get() + _size}; }

  // Sets the 24-bit counter as many occurrences would.
  void set_counter(std::uint32_t counter) const {
    for (unsigned i = 0; i < 3; ++i)
      _memory[i] = static_cast<unsigned char>(counter >> (8 * i));
  }
  std::uint32_t counter() const {
    return _memory[0] | std::uint32_t{_memory[1]} << 8 | std::uint32_t{_memory[2]} << 16;
  }
  bool overflow_flag() const { return (_memory[3] & 0x80) != 0; }

 private:
  template <typename Build>
  Record(std::uint8_t type, const Build& build)
      : _size(NGram::_ngrams_memory_sizes[static_cast<std::size_t>(std::popcount(type))]),
        _memory(std::make_unique<unsigned char[]>(_size)) {
    for (std::size_t i = 0; i < _size; ++i)
      _memory[i] = 0xAB;
    _record = build(_memory.get());
  }

  std::size_t _size;
  std::unique_ptr<unsigned char[]> _memory;
  NGram* _record = nullptr;
};

// A context word as a record keeps it.
struct ContextEntry {
  std::uint32_t lemma;
  std::uint8_t tag;
  std::uint32_t frequency;
  bool narrow;

  friend bool operator==(const ContextEntry&, const ContextEntry&) = default;
  friend std::ostream& operator<<(std::ostream& os, const ContextEntry& e) {
    return os << e.lemma << '/' << unsigned{e.tag} << ':' << e.frequency << (e.narrow ? "n" : "w");
  }
};

inline std::vector<ContextEntry> contexts_of(const NGram& record) {
  std::vector<ContextEntry> entries;
  for (const PartOfContext& part : record.contexts())
    entries.push_back({part.lemma(), part.tag(), part.frequency(), part.narrow()});
  return entries;
}

// Counts an occurrence under one type, as the extraction does. Returns its record.
inline NGram* count(NGramStore& store, const MemberList& members, std::uint8_t type) {
  const auto [record, inserted] = store.insert(*NGramToken::get(members, type));
  if (!inserted) record->inc();
  return record;
}

// Counts an occurrence under every type, a number of times.
inline void count_all_types(NGramStore& store, const std::vector<MemberSpec>& specs, unsigned times = 1) {
  const Occurrence occurrence(specs);
  for (unsigned i = 0; i < times; ++i) {
    for (std::uint8_t type = 0; type <= NGram::_full_ngram_type; ++type)
      count(store, occurrence.members(), type);
  }
}

// The frequency under which a pattern is stored; 0 when it is not.
inline std::uint32_t frequency_of(const NGramStore& store, const std::vector<MemberSpec>& specs, std::uint8_t type) {
  const NGram* const record = store.get(*NGramToken::get(Occurrence(specs).members(), type));
  return record == nullptr ? 0 : record->frequency();
}

// The records of a type in the order in which the output files list them.
inline std::vector<const NGram*> records_of(const NGramStore& store, std::uint8_t type) {
  const auto& records = store.records(type);
  return {records.begin(), records.end()};
}

}  // namespace colx::test
