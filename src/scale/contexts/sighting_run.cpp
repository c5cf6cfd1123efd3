#include "scale/contexts/sighting_run.h"

#include <algorithm>
#include <cstring>

#include "scale/contexts/seen_words_coding.h"
#include "scale/counting/patterns.h"
#include "scale/counting/records.h"
#include "spill/encoding.h"

namespace colx::scale {

namespace {

// For each record besides its own bytes: a slot of the index, and its place while it is written.
constexpr std::size_t bytes_beside_sighted = 16 + 8;

// For each word: itself and its place, in vectors that may have room for as many again.
constexpr std::size_t bytes_of_word = 16;

constexpr std::size_t least_words = 4096;

// They are numbered in 32 bits.
constexpr std::size_t most_occurrences = std::size_t{1} << 31;

// A record has room for the handle of a list of contexts. Here that is the number of its last occurrence and 1.
std::uint32_t _last_of(NGram& record) {
  std::uint32_t last;
  std::memcpy(&last, record.context_handle(), sizeof last);
  return last;
}

void _set_last(NGram& record, std::uint32_t last) {
  static_assert(sizeof last <= ContextList::handle_size);
  std::memcpy(record.context_handle(), &last, sizeof last);
}

}  // namespace

SightingRun::SightingRun(std::size_t memory, MorphologicFilter& filter)
    : _memory(memory / 8 * 7),
      _most_words(std::clamp(memory / 8 / bytes_of_word, least_words, most_occurrences)),
      _filter(filter),
      _types(NGram::_full_ngram_type) {
  const std::size_t most = std::clamp(_memory / _bytes_of_occurrence(), 2 * OccurrenceBatch::capacity,
                                      most_occurrences + OccurrenceBatch::capacity);
  // What is never used is never there.
  _sightings.reserve(most * _units());
  for (Type& type : _types)
    type.before.reserve(most);
  _clear();
}

void SightingRun::_clear() {
  _words.clear();
  _sightings.clear();
  _size = 0;
  for (std::size_t i = 0; i < _types.size(); ++i) {
    Type& type = _types[i];
    const auto number = static_cast<std::uint8_t>(i + 1);
    const std::size_t record_size = NGram::_ngrams_memory_sizes[NGram::_members_count[number]];
    type.before.clear();
    type.records.reset();
    type.pool = std::make_unique<VoidPool>(static_cast<std::uint32_t>(RecordTable::records_per_chunk * record_size));
    type.records = std::make_unique<RecordTable>(number, *type.pool);
  }
}

bool SightingRun::full() const {
  if (_words.size() > _most_words || _size > most_occurrences) return true;
  if (_size == 0) return false;
  std::size_t bytes = (_size + OccurrenceBatch::capacity) * _bytes_of_occurrence();
  for (std::size_t i = 0; i < _types.size(); ++i)
    bytes += (_types[i].records->size() + OccurrenceBatch::capacity) *
             (NGram::_ngrams_memory_sizes[NGram::_members_count[i + 1]] + bytes_beside_sighted);
  return bytes > _memory;
}

void SightingRun::take(const OccurrenceBatch& batch, std::span<const Sighting> sightings, std::uint64_t first) {
  if (_size == 0) _first = first;
  for (const Sighting& sighting : sightings) {
    _sightings.insert(_sightings.end(), {sighting.begin, sighting.end, sighting.left, sighting.right});
    _sightings.insert(_sightings.end(), sighting.words.begin(), sighting.words.begin() + settings::n);
  }
  for (std::size_t i = 0; i < _types.size(); ++i) {
    const auto type = static_cast<std::uint8_t>(i + 1);
    std::vector<std::uint32_t>& before = _types[i].before;
    _types[i].records->count(
        batch, [&](std::size_t occurrence) { return !_filter.is_on() || _filter.admits(batch, occurrence, type); },
        [&](std::size_t, NGram* record) {
          const auto occurrence = static_cast<std::uint32_t>(before.size());
          before.push_back(record == nullptr ? 0 : _last_of(*record));
          if (record != nullptr) _set_last(*record, occurrence + 1);
        });
  }
  _size += static_cast<std::uint32_t>(batch.size());
}

FileMark SightingRun::write(const std::string& path, unsigned bucket_bits, std::vector<std::uint64_t>& bytes) {
  SegmentWriter file(path, sightings_kind);
  for (std::size_t type = 1; type <= _types.size(); ++type)
    _write_type(file, static_cast<std::uint8_t>(type), bucket_bits, bytes[type]);
  _clear();
  return file.finish();
}

void SightingRun::_write_type(SegmentWriter& file, std::uint8_t type, unsigned bucket_bits, std::uint64_t& bytes) {
  const RecordTable& records = *_types[type - 1U].records;
  const Positions positions(type);
  std::vector<std::uint32_t> buckets(records.size());
  std::vector<std::uint32_t> begins((std::size_t{1} << bucket_bits) + 1, 0);
  for (std::uint32_t i = 0; i < records.size(); ++i) {
    const NGram& record = *records.record(i);
    std::uint64_t hash = 0;
    for (unsigned m = 0; m < positions.count; ++m)
      hash += member_hash(record.member(m), positions.at[m]);
    buckets[i] = static_cast<std::uint32_t>(bucket_of(hash, bucket_bits));
    ++begins[buckets[i] + 1];
  }
  for (std::size_t b = 1; b < begins.size(); ++b)
    begins[b] += begins[b - 1];
  std::vector<std::uint32_t> order(records.size());
  std::vector<std::uint32_t> next(begins.begin(), begins.end() - 1);
  for (std::uint32_t i = 0; i < records.size(); ++i)
    order[next[buckets[i]]++] = i;

  std::string segment;
  for (std::size_t b = 0; b + 1 < begins.size(); ++b) {
    segment.clear();
    for (std::uint32_t i = begins[b]; i < begins[b + 1]; ++i)
      _append_record(segment, type, *records.record(order[i]));
    bytes += segment.size();
    file.add(segment);
  }
}

void SightingRun::_append_record(std::string& to, std::uint8_t type, NGram& record) {
  const std::vector<std::uint32_t>& before = _types[type - 1U].before;
  char members[NGram::Member::size * constants::max_grammity + sizeof(std::uint64_t)];
  char* end = members;
  for (unsigned m = 0; m < NGram::_members_count[type]; ++m)
    end = put_member(end, record.member(m));
  to.append(members, static_cast<std::size_t>(end - members));

  const std::uint32_t last = _last_of(record);
  std::uint32_t first = last;
  while (before[first - 1] != 0)
    first = before[first - 1];
  append_short(to, _first + first - 1);
  if (type == NGram::_full_ngram_type) {
    _list.clear();
    for (std::uint32_t occurrence = last; occurrence != 0; occurrence = before[occurrence - 1]) {
      const std::uint32_t* const sighting = _sighting(occurrence - 1);
      if (sighting[3] != Sighting::none) _list.add(sighting[3], 1);
      if (sighting[2] != Sighting::none) _list.add(sighting[2], 1);
    }
    append_seen_words(to, _list.words());
  }
  _list.clear();
  for (std::uint32_t occurrence = last; occurrence != 0; occurrence = before[occurrence - 1])
    _take_window(type, occurrence - 1);
  append_seen_words(to, _list.words());
}

// Takes the words of a window, from the last to the first, but for those at significant positions of the occurrence.
void SightingRun::_take_window(std::uint8_t type, std::size_t occurrence) {
  const std::uint32_t* const sighting = _sighting(occurrence);
  const std::uint32_t begin = sighting[0];
  std::uint32_t end = sighting[1];
  const auto take_from = [&](std::uint32_t place) {
    while (end != place)
      _list.add(_words[--end], 1);
  };
  for (unsigned i = settings::n; i-- > 0;) {
    const std::uint32_t place = sighting[4 + i];
    if (!NGram::significant(type, i) || place < begin || place >= end) continue;
    take_from(place + 1);
    end = place;
  }
  take_from(begin);
}

}  // namespace colx::scale
