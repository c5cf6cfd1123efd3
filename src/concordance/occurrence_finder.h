#pragma once

// The occurrences of wanted N-grams in a sentence: those of the enumeration of all pieces, without enumerating the
// pieces of sentences that hold none.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "concordance/wanted_trees.h"
#include "corpus/word.h"
#include "extraction/ntree.h"

namespace colx::concordance {

// Goes from sentence to sentence and uses its memory again for each.
class OccurrenceFinder {
 public:
  // The wanted N-grams of n words, which have been closed, must outlive this object.
  OccurrenceFinder(WantedTrees& wanted, unsigned n) : _wanted(wanted), _n(n) {}

  // Calls `visit(ngram, positions)` for every occurrence, as often as ngrex counts it. Positions are ascending, from 1,
  // and valid during the call.
  template <typename Visit>
  void for_each(WordRange sentence, const Visit& visit) {
    if (!_may_hold_any(sentence)) return;
    _tree.build(_n <= most_words_without_blocks ? _with_wanted_edges_only(sentence) : sentence);
    _enumerator.extract_subtrees(_tree, _n, [&](std::span<const Position> positions) {
      const auto wanted_edges = std::count_if(positions.begin(), positions.end(),
                                              [&](Position position) { return _is_wanted[position] != 0; });
      if (static_cast<std::size_t>(wanted_edges) + 1 < _n) return;
      _wanted.for_each_match(sentence, positions, [&](std::size_t ngram) { visit(ngram, positions); });
    });
  }

 private:
  // Of up to so many words all pieces are enumerated, each once, so that edges which no wanted N-gram has may be left
  // out beforehand. The rule of blocks makes the pieces of more words depend on all edges.
  static constexpr unsigned most_words_without_blocks = 4;

  bool _may_hold_any(WordRange sentence);
  void _find_cycles(WordRange sentence);
  WordRange _with_wanted_edges_only(WordRange sentence);

  WantedTrees& _wanted;
  unsigned _n;
  NTree _tree;
  SubtreeEnumerator _enumerator;
  std::vector<std::uint8_t> _is_wanted;      // by position: the edge to its parent
  std::vector<std::uint8_t> _is_in_cycle;    // by position
  std::vector<std::uint32_t> _seen_from;     // by position: the word from which it was come upon; 0: none yet
  std::vector<std::uint32_t> _wanted_below;  // by position: wanted edges below a word whose own edge is not wanted
  std::vector<Word> _words;
};

}  // namespace colx::concordance
