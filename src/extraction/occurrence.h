#pragma once

// Counting the occurrences of N-grams: under each of their types, with their contexts, past the morphological filter.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "corpus/buffer.h"
#include "corpus/datafile_stats.h"
#include "extraction/ntree.h"
#include "extraction/stores.h"
#include "extraction/tag_filters.h"
#include "model/context.h"
#include "model/occurrence_batch.h"

namespace colx {

// Takes the occurrences of one datafile and counts them in batches. What has been added is in the store, and in the
// statistics, only after flush.
class OccurrenceCounter {
 public:
  // Buffer, statistics and stores must outlive the counter, and the rules of the filters stay as they are.
  OccurrenceCounter(const Buffer& buffer, NamedDataFileStats& stats, const Stores& stores);

  // Turns to the current sentence of the buffer. With contexts, flush must come before the buffer moves on.
  void begin_sentence();

  // Takes an occurrence by the positions of its words in the current sentence, ascending and from 1.
  void add(std::span<const Position> positions);

  // Counts everything taken so far.
  void flush();

 private:
  void _count_type(std::uint8_t type);
  void _store_wide_context(ContextList contexts, std::size_t occurrence, std::uint8_t type) const;
  void _store_narrow_context(ContextList contexts, std::size_t occurrence) const;

  const Buffer& _buffer;
  NamedDataFileStats& _stats;
  NGramStore& _ngrams;
  MorphologicFilter _morphologic_filter;
  ContextFilter _context_filter;
  OccurrenceBatch _batch;
  WordRange _sentence;

  // Only with contexts: where the words of the batch stand in the buffer, by occurrence and position, and its root.
  std::vector<std::array<std::size_t, constants::max_grammity>> _places;
  std::vector<std::size_t> _roots;
  // Only with contexts: the words that the context filter admits, packed as in TaggedLemma, and by place in the buffer
  // how many of them come before.
  std::vector<std::uint32_t> _context_words;
  std::vector<std::size_t> _context_words_before;
};

}  // namespace colx
