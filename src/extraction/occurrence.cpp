#include "extraction/occurrence.h"

#include "base/config.h"
#include "extraction/occurrence_members.h"

namespace colx {

OccurrenceCounter::OccurrenceCounter(const Buffer& buffer, NamedDataFileStats& stats, const Stores& stores)
    : _buffer(buffer),
      _stats(stats),
      _ngrams(stores.ngrams),
      _morphologic_filter(stores.morphologic_filter, stores.tags),
      _context_filter(stores.context_filter, stores.tags) {
  if (!NGram::_context_tracing_on) return;
  _places.resize(OccurrenceBatch::capacity);
  _roots.resize(OccurrenceBatch::capacity);
}

void OccurrenceCounter::begin_sentence() {
  _sentence = _buffer.current();
  if (!NGram::_context_tracing_on) return;
  _context_words.clear();
  _context_words_before.clear();
  const WordRange window = _buffer.all();
  for (WordIterator word = window.first; word != window.second; ++word) {
    _context_words_before.push_back(_context_words.size());
    if (_context_filter.admits(word->tag)) _context_words.push_back(TaggedLemma::pack(word->lemma, word->tag));
  }
  _context_words_before.push_back(_context_words.size());
}

void OccurrenceCounter::add(std::span<const Position> positions) {
  const std::size_t occurrence = _batch.size();
  _batch.add();
  std::array<NGram::Member, constants::max_grammity> members;
  occurrence_members(_sentence, positions, members);
  for (unsigned i = 0; i < positions.size(); ++i)
    _batch.set_last(i, members[i]);
  if (NGram::_context_tracing_on) {
    const auto sentence_place = static_cast<std::size_t>(_sentence.first - _buffer.all().first);
    for (unsigned i = 0; i < positions.size(); ++i) {
      const std::size_t place = sentence_place + positions[i] - 1U;
      _places[occurrence][i] = place;
      if (members[i].parent() == 0) _roots[occurrence] = place;
    }
  }
  if (_batch.full()) flush();
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
}

void OccurrenceCounter::_count_type(std::uint8_t type) {
  const bool full = type == NGram::_full_ngram_type;
  const auto counted = [&](std::size_t occurrence, NGram* record) {
    if (full) {
      ++_stats.extracted_count;
      ++(record == nullptr ? _stats.filtered_count : _stats.passed_count);
    }
    if (record == nullptr || !NGram::_context_tracing_on) return;
    const ContextList contexts = _ngrams.contexts(*record);
    _store_wide_context(contexts, occurrence, type);
    if (full) _store_narrow_context(contexts, occurrence);
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

// Counts the words of the context window but for those at significant positions of the occurrence. In the words mode
// the window lies around the root, in the sentences mode it is all that the buffer holds.
void OccurrenceCounter::_store_wide_context(ContextList contexts, std::size_t occurrence, std::uint8_t type) const {
  WordRange window = _buffer.all();
  const WordIterator origin = window.first;
  if (settings::context_window.mode == ContextWindow::words) {
    const WordIterator root = origin + _roots[occurrence];
    window = _buffer.context_range(root, root);
  }
  auto begin = static_cast<std::size_t>(window.first - origin);
  const auto end = static_cast<std::size_t>(window.second - origin);
  const auto add_words_before = [&](std::size_t place) {
    const std::uint32_t* const first = _context_words.data() + _context_words_before[begin];
    contexts.add_wide({first, _context_words.data() + _context_words_before[place]});
  };
  for (unsigned i = 0; i < settings::n; ++i) {
    const std::size_t place = _places[occurrence][i];
    if (!NGram::significant(type, i) || place < begin || place >= end) continue;
    add_words_before(place);
    begin = place + 1;
  }
  add_words_before(end);
}

// Counts the words next to an occurrence, within its sentence.
void OccurrenceCounter::_store_narrow_context(ContextList contexts, std::size_t occurrence) const {
  const auto add = [&](const Word& word) { contexts.add_narrow(TaggedLemma::pack(word.lemma, word.tag)); };
  const WordIterator first = _buffer.all().first + _places[occurrence].front();
  const WordIterator after = _buffer.all().first + _places[occurrence][settings::n - 1U] + 1;
  if (first != _sentence.first) add(first[-1]);
  if (after != _sentence.second) add(*after);
}

}  // namespace colx
