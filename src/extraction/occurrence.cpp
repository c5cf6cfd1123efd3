#include "extraction/occurrence.h"

#include <algorithm>
#include <array>

#include "base/config.h"
#include "extraction/occurrence_members.h"

namespace colx {

OccurrenceCounter::OccurrenceCounter(const Buffer& buffer, NamedDataFileStats& stats, const Stores& stores)
    : _buffer(buffer),
      _stats(stats),
      _ngrams(stores.ngrams),
      _morphologic_filter(stores.morphologic_filter, stores.tags),
      _context_filter(stores.context_filter, stores.tags) {
  if (NGram::_context_tracing_on) _sightings.resize(OccurrenceBatch::capacity);
}

void OccurrenceCounter::begin_sentence() {
  _sentence = _buffer.current();
  if (!NGram::_context_tracing_on) return;
  // Sentences without occurrences have words as well.
  if (_ngrams.contexts_are_due()) flush();
  _take_words();
}

// Adds those words that the buffer holds and had not taken in the last time to the words of the sightings.
void OccurrenceCounter::_take_words() {
  const WordRange held = _buffer.all();
  const auto size = static_cast<std::uint32_t>(held.second - held.first);
  const WordIterator first_fresh = held.second - std::min(size, _buffer.words_count() - _taken_in);
  _taken_in = _buffer.words_count();
  Sightings& sightings = _ngrams.sightings();
  const auto admitted = [&](const Word& word) { return _context_filter.admits(word.tag); };
  std::uint32_t place =
      sightings.words() - static_cast<std::uint32_t>(std::count_if(held.first, first_fresh, admitted));
  _places.clear();
  for (WordIterator word = held.first; word != held.second; ++word) {
    _places.push_back(place);
    if (!admitted(*word)) continue;
    if (word >= first_fresh) sightings.add_word(TaggedLemma::pack(word->lemma, word->tag));
    ++place;
  }
  _places.push_back(place);
}

void OccurrenceCounter::add(std::span<const Position> positions) {
  const std::size_t occurrence = _batch.size();
  _batch.add();
  std::array<NGram::Member, constants::max_grammity> members;
  occurrence_members(_sentence, positions, members);
  for (unsigned i = 0; i < positions.size(); ++i)
    _batch.set_last(i, members[i]);
  if (NGram::_context_tracing_on) _sightings[occurrence] = _is_kept(occurrence) ? _add_sighting(positions, members) : 0;
  if (_batch.full()) flush();
}

// Tells whether the filter admits an occurrence under any type: then it does so under one that is a single word.
bool OccurrenceCounter::_is_kept(std::size_t occurrence) {
  if (!_morphologic_filter.is_on()) return true;
  for (unsigned type = 1; type <= NGram::_full_ngram_type; type *= 2) {
    if (_morphologic_filter.admits(_batch, occurrence, static_cast<std::uint8_t>(type))) return true;
  }
  return false;
}

// In the words mode the window lies around the root, in the sentences mode it is all that the buffer holds.
std::uint32_t OccurrenceCounter::_add_sighting(std::span<const Position> positions,
                                               std::span<const NGram::Member> members) {
  const WordRange held = _buffer.all();
  const auto word_at = [&](Position position) { return _sentence.first + (position - 1); };
  const auto place_of = [&](WordIterator word) { return _places[static_cast<std::size_t>(word - held.first)]; };
  WordRange window = held;
  Sighting sighting;
  for (std::size_t i = 0; i < positions.size(); ++i) {
    const WordIterator word = word_at(positions[i]);
    sighting.words[i] = place_of(word) != place_of(word + 1) ? place_of(word) : Sighting::none;
    if (members[i].parent() == 0 && settings::context_window.mode == ContextWindow::words)
      window = _buffer.context_range(word, word);
  }
  sighting.begin = place_of(window.first);
  sighting.end = place_of(window.second);
  // Narrow contexts are not filtered, but stay within the sentence.
  const WordIterator first = word_at(positions.front());
  const WordIterator after = word_at(positions.back()) + 1;
  if (first != _sentence.first) sighting.left = TaggedLemma::pack(first[-1].lemma, first[-1].tag);
  if (after != _sentence.second) sighting.right = TaggedLemma::pack(after->lemma, after->tag);
  return _ngrams.sightings().add(sighting);
}

void OccurrenceCounter::flush() {
  _ngrams.count_empty(_batch.size());
  if (_ngrams.patterns_last()) {
    _count_type(NGram::_full_ngram_type);
    _ngrams.make_room_for_patterns();
  } else {
    for (std::uint8_t type = 1; type <= NGram::_full_ngram_type; ++type)
      _count_type(type);
  }
  _batch.clear();
  if (NGram::_context_tracing_on && _ngrams.contexts_are_due()) _keep_contexts();
}

// The words that the buffer holds are forgotten with the sightings, but those to come are among them.
void OccurrenceCounter::_keep_contexts() {
  _ngrams.keep_contexts();
  const WordRange held = _buffer.all();
  _taken_in = _buffer.words_count() - static_cast<std::uint32_t>(held.second - held.first);
  _take_words();
}

void OccurrenceCounter::_count_type(std::uint8_t type) {
  const bool full = type == NGram::_full_ngram_type;
  const auto counted = [&](std::size_t occurrence, NGram* record) {
    if (full) {
      ++_stats.extracted_count;
      ++(record == nullptr ? _stats.filtered_count : _stats.passed_count);
    }
    if (record != nullptr && NGram::_context_tracing_on) _ngrams.contexts(*record).add(_sightings[occurrence]);
  };
  RecordTable& records = _ngrams.records(type);
  if (_morphologic_filter.is_on()) {
    records.count(
        _batch, [&](std::size_t o) { return _morphologic_filter.admits(_batch, o, type); }, counted);
  } else {
    records.count(
        _batch, [](std::size_t) { return true; }, counted);
  }
}

}  // namespace colx
