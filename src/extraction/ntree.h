#pragma once

// The dependency tree of one sentence and the enumeration of its pieces: connected subtrees of a given number of words.
//
// Pieces of a word are assembled from pieces of its children, sizes distributed over the children by ordered
// decompositions and joined by the block rule: of all combinations of one piece from each list as many are formed as
// there are, but result e takes entry e / (total / size) of a list, so that with two or more lists of more than one
// piece some combinations repeat and others are missing. Words in a cycle of parents, and words whose parent is outside
// the sentence, are nobody's children; the pieces below them are found all the same.
//
// Two passes: bottom-up, lists of the smaller pieces of every word whose parent will read them; then the pieces of full
// size, one after another by ascending top word, which are never kept. Memory is that of the lists of one sentence, and
// all of it is used again for the next.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/config.h"
#include "corpus/word.h"
#include "extraction/decompositions.h"

namespace colx {

// A position in a sentence, from 1; 0 is the pseudo-word above the sentence.
using Position = std::uint16_t;

// The tree of a sentence: children as one flat array, ascending for every word.
class NTree {
 public:
  // Makes the tree of another sentence of up to constants::max_sentence_length words.
  void build(WordRange sentence);

  // Number of words.
  std::size_t size() const { return _parents.size() - 1; }

  // The position of a word's parent; 0 also when that lies outside the sentence.
  Position parent(std::size_t position) const { return _parents[position]; }

  // The positions of the words whose parent this is, ascending.
  std::span<const Position> children(std::size_t position) const {
    return {_children.data() + _offsets[position], _children.data() + _offsets[position + 1]};
  }

 private:
  std::vector<Position> _parents;       // by position
  std::vector<std::uint32_t> _offsets;  // by position: where the children begin
  std::vector<Position> _children;
};

// Enumerates the pieces of one tree after another.
class SubtreeEnumerator {
 public:
  // Calls `visit(positions)` for every piece of `n` words, 2 to constants::max_grammity: by ascending top word, those
  // of one word in the required order. Positions are ascending and valid during the call.
  template <typename Visit>
  void extract_subtrees(const NTree& tree, unsigned n, const Visit& visit) {
    if (tree.size() < n) return;
    _order_words(tree, n);
    if (n > 2) _list_smaller_pieces(tree, n);
    for (std::size_t top = 1; top <= tree.size(); ++top) {
      if (_reach[top] < n) continue;
      _for_each_piece(tree, top, n, [&](std::span<Position> piece) {
        _sort(piece);
        visit(std::span<const Position>(piece));
      });
    }
  }

 private:
  // Pieces of one size of one word, one after another.
  struct List {
    std::size_t begin = 0;  // in _pieces
    std::size_t count = 0;
  };

  // A list that takes part in a join, and where the join stands in it.
  struct Source {
    std::size_t piece;        // in _pieces
    std::size_t size;         // of a piece
    std::size_t repetitions;  // how many results take one and the same piece
    std::size_t left;         // how many more take this one
  };

  void _order_words(const NTree& tree, unsigned n);
  void _list_smaller_pieces(const NTree& tree, unsigned n);

  List& _list(std::size_t position, std::size_t size) { return _lists[position * constants::max_grammity + size]; }

  // Sorts at most seven positions.
  static void _sort(std::span<Position> piece) {
    for (std::size_t i = 1; i < piece.size(); ++i) {
      const Position position = piece[i];
      std::size_t j = i;
      for (; j > 0 && piece[j - 1] > position; --j)
        piece[j] = piece[j - 1];
      piece[j] = position;
    }
  }

  // Calls `take(positions)` for every piece of `size` words, 2 or more, with this top word; positions are in any order.
  template <typename Take>
  void _for_each_piece(const NTree& tree, std::size_t top, unsigned size, const Take& take) {
    const std::span<const Position> children = tree.children(top);
    std::array<Position, constants::max_grammity> piece;
    if (size == 2) {
      for (const Position child : children) {
        piece[0] = child;
        piece[1] = static_cast<Position>(top);
        take(std::span<Position>(piece.data(), 2));
      }
      return;
    }
    _capacities.assign(1, 0);
    for (const Position child : children)
      _capacities.push_back(_capacities.back() + _reach[child]);
    _decompositions.for_each(size - 1, _capacities, [&](std::span<const Share> shares) {
      std::array<Source, constants::max_grammity> sources;
      std::size_t total = 1;
      for (const Share& share : shares)
        total *= _list(children[share.child], share.size).count;
      // Shares come from the highest child down; the lists join from the lowest up.
      std::size_t used = 0;
      for (std::size_t i = shares.size(); i-- > 0;) {
        const Position child = children[shares[i].child];
        const std::size_t repetitions = total / _list(child, shares[i].size).count;
        sources[used++] = {_list(child, shares[i].size).begin, shares[i].size, repetitions, repetitions};
      }
      for (std::size_t e = 0; e < total; ++e) {
        Position* next = piece.data();
        for (std::size_t i = 0; i < used; ++i) {
          Source& source = sources[i];
          for (std::size_t k = 0; k < source.size; ++k)
            *next++ = _pieces[source.piece + k];
          if (--source.left == 0) {
            source.piece += source.size;
            source.left = source.repetitions;
          }
        }
        *next = static_cast<Position>(top);
        take(std::span<Position>(piece.data(), size));
      }
    });
  }

  std::vector<Position> _bottom_up;        // the words that no cycle hangs below, children before their parents
  std::vector<std::uint32_t> _unfinished;  // by position: children that _bottom_up does not hold yet
  std::vector<std::uint32_t> _reach;       // by position: words of its largest piece, up to n; 0 above a cycle
  std::vector<List> _lists;                // by position and size
  std::vector<Position> _pieces;           // all lists
  std::vector<std::uint32_t> _capacities;
  SumDecompositions _decompositions;
};

}  // namespace colx
