#pragma once

// Counting the occurrences of N-grams: under each of their types, with their contexts, past the morphological filter.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "corpus/buffer.h"
#include "corpus/datafile_stats.h"
#include "extraction/ntree.h"
#include "extraction/stores.h"
#include "extraction/tag_filters.h"
#include "model/occurrence_batch.h"

namespace colx {

// Takes the occurrences of one datafile and counts them in batches. What has been added is in the store, and in the
// statistics, only after flush.
class OccurrenceCounter {
 public:
  // Buffer, statistics and stores must outlive the counter, and the rules of the filters stay as they are.
  OccurrenceCounter(const Buffer& buffer, NamedDataFileStats& stats, const Stores& stores);

  // Turns to the current sentence of the buffer.
  void begin_sentence();

  // Takes an occurrence by the positions of its words in the current sentence, ascending and from 1.
  void add(std::span<const Position> positions);

  // Counts everything taken so far.
  void flush();

 private:
  void _count_type(std::uint8_t type);
  void _take_words();
  void _keep_contexts();
  bool _is_kept(std::size_t occurrence);
  std::uint32_t _add_sighting(std::span<const Position> positions, std::span<const NGram::Member> members);

  const Buffer& _buffer;
  NamedDataFileStats& _stats;
  NGramStore& _ngrams;
  MorphologicFilter _morphologic_filter;
  ContextFilter _context_filter;
  OccurrenceBatch _batch;
  WordRange _sentence;

  // Only with contexts: the sightings of the batch; how many words the buffer had taken in when it was last asked; and,
  // by place in the buffer, where the first word from there on that the context filter admits stands among the words of
  // the sightings.
  std::vector<std::uint32_t> _sightings;
  std::uint32_t _taken_in = 0;
  std::vector<std::uint32_t> _places;
};

}  // namespace colx
