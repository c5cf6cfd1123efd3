#pragma once

// The N-grams of one output datafile beside those of another.

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "rows/block_source.h"
#include "rows/counterpart.h"
#include "rows/text_store.h"
#include "util/compact_index.h"

namespace colx::table {

// Gives the N-grams of a file in their order, which it does not keep, and then those that only the other file has, in
// the order of that one, with no other cell than the total of the file, and measures that are "nan". N-grams are the
// same when their member lines are. An N-gram of k words of the other file takes 8 + 8k bytes, a bit and a slot of 5 to
// 7.5 bytes; each lemma, and each tag with parent and relation, is kept once.
class ComparedRows : public BlockSource {
 public:
  // Both sources must outlive the rows; names are what messages call them. Reads all of the other file. Throws
  // input_error, also when an N-gram stands there twice or the cells of its N-grams do not add up to the same total.
  ComparedRows(BlockSource& source, std::string name, BlockSource& other, std::string other_name);

  // Throws usage_error when the files do not have the same N, and input_error when cells do not add up to the same
  // total.
  bool next(Block& block) override;

  // What the other file knows of the N-gram that was given last, and of any that was given.
  Counterpart counterpart_of_last() const { return _counterpart(_last); }
  Counterpart counterpart_of(const Block& block) const { return _counterpart(_find(block)); }

 private:
  // The words of an N-gram, each as the number of its lemma and that of the rest.
  using Key = std::array<std::uint64_t, largest_n>;

  void _read(BlockSource& other);
  std::uint64_t _hash(const Key& key) const;
  Key _key_of(std::uint32_t number) const;
  std::uint32_t _find(const Key& key) const;
  std::uint32_t _find(const Block& block) const;
  Counterpart _counterpart(std::uint32_t number) const;
  bool _give_other(Block& block);

  BlockSource& _source;
  std::string _name;
  std::string _other_name;
  std::size_t _n = 0;        // of the other file; 0 when it has no N-gram
  bool _has_rows = false;    // the file
  std::uint64_t _total = 0;  // of the file
  std::uint64_t _other_total = 0;
  TextStore _lemmas;
  TextStore _rests;                  // TAB, tag, TAB, parent, TAB, relation
  std::deque<std::uint64_t> _words;  // n an N-gram
  std::deque<std::uint64_t> _frequencies;
  CompactIndex _index;
  std::vector<bool> _found;  // in the file
  bool _source_ended = false;
  std::uint32_t _last = CompactIndex::none;
  std::uint32_t _next = 0;
  std::string _text;  // of the N-gram that was given last, when only the other file has it
};

}  // namespace colx::table
