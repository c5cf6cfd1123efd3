#include "extraction/ntree.h"

#include <algorithm>
#include <deque>

#include "extraction/decompositions.h"

namespace colx {

namespace {

// The pieces rooted at one node, by their size.
using PiecesBySize = std::vector<std::vector<Piece>>;

// The pieces rooted at node v, of all sizes up to n, made from those of its children.
PiecesBySize _pieces_of(const NTreeNode& v, unsigned n, const std::vector<PiecesBySize>& pieces,
                        SumDecompositions& decompositions) {
  PiecesBySize own(n + 1);
  own[1].push_back({v.index});
  const std::vector<std::uint32_t> children(v.children.begin(), v.children.end());
  const auto of_child = [&](const Share& share) -> const std::vector<Piece>& {
    return pieces[children[share.child]][share.size];
  };
  for (std::uint32_t size = 2; size <= n; ++size) {
    decompositions.for_each(
        size - 1, static_cast<std::uint32_t>(children.size()),
        [&](std::uint32_t child, std::uint32_t share) {
          return !of_child({child, share}).empty();
        },
        [&](std::span<const Share> shares) {
          std::vector<std::span<const Piece>> lists;
          for (const Share& share : shares)
            lists.push_back(of_child(share));
          for (Piece& piece : _join_subtrees(lists)) {
            piece.push_back(v.index);
            own[size].push_back(std::move(piece));
          }
        });
  }
  return own;
}

}  // namespace

void _build_tree(WordRange sentence, NTree& tree) {
  for (WordIterator word = sentence.first; word != sentence.second; ++word) {
    tree.push_back({word->order, word->parent, {}});
  }
  for (std::uint32_t i = 1; i < tree.size(); ++i) {
    const std::uint32_t parent = tree[i].parent;
    if (parent < tree.size()) tree[parent].children.insert(i);
  }
}

void extract_subtrees(const NTree& tree, unsigned n, Pieces& result) {
  if (tree.size() <= n) return;
  SumDecompositions decompositions;
  std::vector<PiecesBySize> pieces(tree.size());
  std::vector<std::size_t> finished_children(tree.size(), 0);
  std::deque<std::uint32_t> queue;
  for (std::uint32_t v = 1; v < tree.size(); ++v) {
    if (tree[v].children.empty()) queue.push_back(v);
  }
  for (; !queue.empty(); queue.pop_front()) {
    const NTreeNode& v = tree[queue.front()];
    pieces[v.index] = _pieces_of(v, n, pieces, decompositions);
    for (Piece piece : pieces[v.index][n]) {
      std::sort(piece.begin(), piece.end());
      result.emplace(v.index, std::move(piece));
    }
    if (v.parent == 0 || v.parent >= tree.size()) continue;
    if (++finished_children[v.parent] == tree[v.parent].children.size()) queue.push_back(v.parent);
  }
}

std::vector<Piece> _join_subtrees(const std::vector<std::span<const Piece>>& lists) {
  std::size_t total = 1;
  for (const auto& list : lists)
    total *= list.size();
  std::vector<Piece> joined(total);
  for (const auto& list : lists) {
    for (std::size_t e = 0; e < total; ++e) {
      const Piece& piece = list[e / (total / list.size())];
      joined[e].insert(joined[e].end(), piece.begin(), piece.end());
    }
  }
  return joined;
}

}  // namespace colx
