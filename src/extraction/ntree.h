#pragma once

// The dependency tree of one sentence and the enumeration of its pieces: connected subtrees of a given number of words.
//
// Pieces are assembled bottom-up. Those rooted at a word are made from pieces rooted at its children, sizes distributed
// over the children by ordered decompositions, and joined by the block rule below. Words in a cycle of parents, and
// words whose parent is outside the sentence, are nobody's children; the pieces below them are found all the same.

#include <cstdint>
#include <map>
#include <set>
#include <span>
#include <vector>

#include "corpus/word.h"

namespace colx {

// A word of the sentence as a node; its place in the tree's vector is its position in the sentence, from 1. Place 0 is
// the pseudo-word above the sentence.
struct NTreeNode {
  std::uint32_t index;
  std::uint32_t parent;
  std::set<std::uint32_t> children;
};

using NTree = std::vector<NTreeNode>;

// The positions of a piece's words.
using Piece = std::vector<std::uint32_t>;

// Pieces by the position of their top word, those of one word in the order in which they are found.
using Pieces = std::multimap<std::uint32_t, Piece>;

// Appends a node for each word of a sentence to a tree that holds the pseudo-word alone.
void _build_tree(WordRange sentence, NTree& tree);

// Adds the pieces of exactly `n` words to `result`, each with its positions ascending.
void extract_subtrees(const NTree& tree, unsigned n, Pieces& result);

// Joins one piece from every list. Of all combinations as many are formed as there are, but by blocks: result e takes
// entry e / (total / size) of a list, so that with two or more lists of more than one piece some combinations repeat
// and others are missing. A list without pieces gives nothing.
std::vector<Piece> _join_subtrees(const std::vector<std::span<const Piece>>& lists);

}  // namespace colx
