#pragma once

// The pairs of an output datafile added up, and their contingency tables made anew.
//
// A table of a pair counts the occurrences of two things: of its dependent and of its head. Each is a word (lemma and
// tag), the order of the two words, and the relation where that belongs to it; what is merged is left out. A row is one
// pair of such things, its margins are the frequencies of each of them over all rows, and its total is the number of
// all occurrences, or of those of its relation when tables are made within relations.

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "rows/block_source.h"
#include "rows/merging.h"
#include "rows/text_store.h"
#include "util/compact_index.h"

namespace colx::table {

// Merged pairs in the order in which the first of each stood in the source. Their measures as the file has them are all
// "nan". A row takes 21 to 24 bytes, a dependent or a head 29 to 32, and each lemma is kept once.
class MergedRows : public BlockSource {
 public:
  // The source must outlive the rows; `name` is what messages call it.
  MergedRows(BlockSource& source, std::string name, Merging merging)
      : _source(source), _name(std::move(name)), _merging(merging) {}

  // The first call reads all of the source. Throws usage_error when its N-grams are no pairs, and input_error when
  // their frequencies do not add up to the total of their tables, so that some are missing.
  bool next(Block& block) override;

 private:
  // A dependent or a head, as far as it counts in its margin.
  struct Side {
    std::uint32_t lemma;
    std::uint32_t tag;
    std::uint32_t relation;  // no_relation when it does not belong to this side
    bool is_head;
    bool is_first;  // in word order; a dependent always is when orders are merged

    bool operator==(const Side&) const = default;
  };
  struct CountedSide {
    Side side;
    std::uint64_t frequency;
  };
  struct Pair {
    std::uint32_t dependent;  // numbers of sides
    std::uint32_t head;
    std::uint64_t frequency;
  };

  static constexpr std::uint32_t no_relation = 0xFFFFFFFF;

  static std::uint64_t _hash(const Side& side);
  static std::uint64_t _hash(const Pair& pair);

  void _read();
  void _count(const Block& block);
  std::uint32_t _count_side(const Side& side, std::uint64_t frequency);
  void _check_total() const;
  [[noreturn]] void _fail(const std::string& message) const;

  BlockSource& _source;
  std::string _name;
  Merging _merging;
  bool _is_read = false;
  bool _has_pairs = false;
  std::uint64_t _total = 0;    // of every table of the source
  std::uint64_t _counted = 0;  // sum of all frequencies
  TextStore _words;            // lemmas and tags
  TextStore _relations;
  std::vector<std::uint64_t> _totals;  // of each relation
  std::deque<CountedSide> _sides;
  CompactIndex _side_index;
  std::deque<Pair> _pairs;
  CompactIndex _pair_index;
  std::size_t _next = 0;
  std::string _text;  // of the pair that was given last
};

}  // namespace colx::table
