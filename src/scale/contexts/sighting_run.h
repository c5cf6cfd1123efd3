#pragma once

// Occurrences with the words around them, as many as the memory takes: what is written of them as one run are the
// context words of every N-gram among them.
//
// An occurrence is kept once, as a window of the words in hand, which for all types is the same; the sightings are
// never written down one by one. The occurrences of a record hang on one another, from the last to the first, which is
// the order in which its list is put together.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/config.h"
#include "extraction/tag_filters.h"
#include "model/occurrence_batch.h"
#include "model/record_table.h"
#include "scale/contexts/seen_words.h"
#include "spill/segment_file.h"
#include "util/pool.h"

namespace colx::scale {

// An occurrence by places among the words of a run.
struct Sighting {
  static constexpr std::uint32_t none = 0xFFFFFFFF;

  std::uint32_t begin;  // of the window of wide contexts
  std::uint32_t end;    // of it
  std::array<std::uint32_t, constants::max_grammity>
      words;           // where those of the occurrence stand; none: not among them
  std::uint32_t left;  // the words beside it, packed as in TaggedLemma; none
  std::uint32_t right;
};

// What tells a file of sightings: a segment for each pair of a type and a bucket. A record is its members, the number
// of its first occurrence in the shard and its lists of seen words: narrow ones, of the full type only, and wide ones.
inline constexpr std::string_view sightings_kind = "sigh";

// Collects sightings, and writes them as runs.
class SightingRun {
 public:
  // Takes about `memory` bytes, but always room for some batches. Occurrences that the filter does not admit under a
  // type are none of that type.
  SightingRun(std::size_t memory, MorphologicFilter& filter);

  // Adds a word that may be seen, packed as in TaggedLemma.
  void add_word(std::uint32_t word) { _words.push_back(word); }

  // Drops all words, when there is no occurrence.
  void forget_words() { _words.clear(); }

  // How many words have been added.
  std::uint32_t words() const { return static_cast<std::uint32_t>(_words.size()); }

  // Whether there is no occurrence.
  bool empty() const { return _size == 0; }

  // Whether another batch, or another sentence, may go beyond the memory.
  bool full() const;

  // Takes the occurrences of a batch, the first of which has this number. There is one sighting for each.
  void take(const OccurrenceBatch& batch, std::span<const Sighting> sightings, std::uint64_t first);

  // Writes the contexts of all occurrences to a file by as many bits of the hash of their records, and adds to `bytes`,
  // by type, how many they are. Forgets occurrences and words.
  FileMark write(const std::string& path, unsigned bucket_bits, std::vector<std::uint64_t>& bytes);

 private:
  // A type: its records, and for each occurrence the one before it of the same record.
  struct Type {
    std::unique_ptr<VoidPool> pool;
    std::unique_ptr<RecordTable> records;
    std::vector<std::uint32_t> before;  // the number of the occurrence and 1; 0: there is none
  };

  // Where the sighting of an occurrence stands: window, words beside it, words of its own.
  static std::size_t _units() { return 4U + settings::n; }
  std::size_t _bytes_of_occurrence() const { return sizeof(std::uint32_t) * (_units() + _types.size()); }
  const std::uint32_t* _sighting(std::size_t occurrence) const { return _sightings.data() + occurrence * _units(); }

  void _clear();
  void _write_type(SegmentWriter& file, std::uint8_t type, unsigned bucket_bits, std::uint64_t& bytes);
  void _append_record(std::string& to, std::uint8_t type, NGram& record);
  void _take_window(std::uint8_t type, std::size_t occurrence);

  std::size_t _memory;  // for occurrences and records
  std::size_t _most_words;
  MorphologicFilter& _filter;
  std::vector<std::uint32_t> _words;
  std::vector<std::uint32_t> _sightings;  // _units() for each occurrence
  std::uint64_t _first = 0;               // number of the first occurrence
  std::uint32_t _size = 0;                // occurrences
  std::vector<Type> _types;               // from type 1
  SeenWords _list;
};

}  // namespace colx::scale
