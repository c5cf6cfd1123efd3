#pragma once

// Occurrences and records made by hand. What tests assume about how a record is built, stored and read stands here.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <ostream>
#include <vector>

#include "corpus/dependencies.h"
#include "model/ngram.h"
#include "model/ngrams.h"
#include "model/occurrence_batch.h"
#include "model/tagged_lemma.h"

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

// The members of an occurrence. A parent outside makes its word the head, as it does in the extraction.
class Occurrence {
 public:
  explicit Occurrence(const std::vector<MemberSpec>& given) {
    for (const MemberSpec& one : given) {
      const std::uint8_t code = relation(one.dependency);
      _members.emplace_back(one.lemma, one.tag, one.parent, one.parent == 0 ? dependency::head : code);
    }
  }

  // All of them, by position.
  const std::vector<NGram::Member>& members() const { return _members; }

  // Those at the significant positions of a type.
  std::vector<NGram::Member> members(std::uint8_t type) const {
    std::vector<NGram::Member> kept;
    for (unsigned i = 0; i < _members.size(); ++i) {
      if (NGram::significant(type, i)) kept.push_back(_members[i]);
    }
    return kept;
  }

  void add_to(OccurrenceBatch& batch) const {
    batch.add();
    for (unsigned i = 0; i < _members.size(); ++i)
      batch.set_last(i, _members[i]);
  }

 private:
  std::vector<NGram::Member> _members;
};

// A record in memory of its own, exactly as large as a record of its type, that held other bytes before.
class Record {
 public:
  Record(const std::vector<MemberSpec>& given, std::uint8_t type)
      : _size(NGram::_ngrams_memory_sizes[static_cast<std::size_t>(std::popcount(type))]),
        _memory(std::make_unique<unsigned char[]>(_size)) {
    for (std::size_t i = 0; i < _size; ++i)
      _memory[i] = 0xAB;
    _record = NGram::build(_memory.get(), type, Occurrence(given).members(type));
  }

  // Counting, and the context words, in memory of the record's own.
  void inc() { _record->inc(overflows); }
  void add(std::uint32_t occurrences) { _record->add(occurrences, overflows); }
  std::uint32_t frequency() const { return _record->frequency(overflows); }
  ContextList contexts() const { return {_record->context_handle(), _record->type(), *_context_memory}; }
  Sightings& sightings() const { return _context_memory->sightings; }

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

  // What was carried out of the counter of this record.
  std::uint32_t& carried() { return overflows[_record]; }

  NGram::Overflows overflows;

 private:
  std::size_t _size;
  std::unique_ptr<unsigned char[]> _memory;
  std::unique_ptr<ContextMemory> _context_memory = std::make_unique<ContextMemory>();
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

// What a list of context words holds.
inline std::vector<ContextEntry> entries_of(const ContextList& contexts) {
  std::vector<ContextEntry> entries;
  for (const PartOfContext& part : contexts.parts())
    entries.push_back({part.lemma(), part.tag(), part.frequency(), part.narrow()});
  return entries;
}

// Adds an occurrence whose own words are not among those of the sightings, with nothing around it but one word.
inline void see(Sightings& sightings, ContextList contexts, std::uint32_t lemma, std::uint8_t tag, bool narrow) {
  const std::uint32_t word = TaggedLemma::pack(lemma, tag);
  Sighting sighting;
  sighting.words.fill(Sighting::none);
  if (narrow) {
    sighting.left = word;
  } else {
    sighting.begin = sightings.words();
    sightings.add_word(word);
    sighting.end = sightings.words();
  }
  contexts.add(sightings.add(sighting));
}

// Counts an occurrence under one type, as the extraction does. Returns its record, which is null for the empty N-gram.
inline NGram* count(NGramStore& store, const Occurrence& occurrence, std::uint8_t type) {
  if (type == 0) {
    store.count_empty(1);
    return nullptr;
  }
  OccurrenceBatch batch;
  occurrence.add_to(batch);
  NGram* counted = nullptr;
  store.records(type).count(
      batch, [](std::size_t) { return true; }, [&](std::size_t, NGram* record) { counted = record; });
  return counted;
}

// Counts an occurrence under every type, a number of times.
inline void count_all_types(NGramStore& store, const std::vector<MemberSpec>& given, unsigned times = 1) {
  const Occurrence occurrence(given);
  for (unsigned i = 0; i < times; ++i) {
    for (std::uint8_t type = 0; type <= NGram::_full_ngram_type; ++type)
      count(store, occurrence, type);
  }
}

// The frequency of a record of a store.
inline std::uint32_t frequency_of(const NGramStore& store, const NGram& record) {
  return store.records(record.type()).frequency(record);
}

// The record under which a pattern is stored, or null. The type is not 0.
inline const NGram* find(const NGramStore& store, const Occurrence& occurrence, std::uint8_t type) {
  OccurrenceBatch batch;
  occurrence.add_to(batch);
  const NGram* found = nullptr;
  store.records(type).find(batch, [&](std::size_t, const NGram* record) { found = record; });
  return found;
}

// The frequency under which a pattern is stored; 0 when it is not.
inline std::uint32_t frequency_of(const NGramStore& store, const std::vector<MemberSpec>& given, std::uint8_t type) {
  if (type == 0) return store.empty_frequency();
  const NGram* const record = find(store, Occurrence(given), type);
  return record == nullptr ? 0 : frequency_of(store, *record);
}

// The records of a type other than 0 in the order in which the output files list them.
inline std::vector<const NGram*> records_of(const NGramStore& store, std::uint8_t type) {
  std::vector<const NGram*> records;
  for (const std::uint32_t number : store.records(type).listed_order())
    records.push_back(store.records(type).record(number));
  return records;
}

}  // namespace colx::test
