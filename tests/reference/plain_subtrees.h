#pragma once

// For tests only, never linked into the program: the enumeration of the connected pieces of a dependency tree, step by
// step as it is defined, over complete decomposition tuples. Costs grow with the number of tuples, so trees must be
// small.

#include <algorithm>
#include <cstddef>
#include <deque>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "tests/reference/plain_decompositions.h"

namespace colx::reference {

using PlainPiece = std::vector<unsigned>;
using PlainPieces = std::multimap<unsigned, PlainPiece>;

// Joins lists of pieces by blocks: result e takes entry e / (total / size) of every list.
inline std::vector<PlainPiece> plain_join(const std::vector<std::vector<PlainPiece>>& lists) {
  std::size_t total = 1;
  for (const auto& list : lists)
    total *= list.size();
  std::vector<PlainPiece> out(total);
  if (total == 0) return out;
  for (const auto& list : lists) {
    const std::size_t block = total / list.size();
    for (std::size_t j = 0; j < list.size(); ++j) {
      for (std::size_t e = j * block; e < (j + 1) * block; ++e)
        out[e].insert(out[e].end(), list[j].begin(), list[j].end());
    }
  }
  return out;
}

// Lists the pieces of exactly `n` words by their top word. Entry i of `parents` is the parent of word i; entry 0 stands
// for the pseudo-word above the sentence. A word whose parent is beyond the sentence is nobody's child.
inline PlainPieces plain_subtrees(const std::vector<unsigned>& parents, unsigned n) {
  PlainPieces result;
  if (parents.size() <= n) return result;
  std::vector<std::set<unsigned>> children(parents.size());
  for (unsigned i = 1; i < parents.size(); ++i) {
    if (parents[i] < parents.size()) children[parents[i]].insert(i);
  }
  std::vector<PlainPieces> pieces(parents.size());
  std::vector<std::size_t> finished(parents.size(), 0);
  std::deque<unsigned> queue;
  for (unsigned i = 1; i < parents.size(); ++i) {
    if (children[i].empty()) queue.push_back(i);
  }
  static std::map<std::pair<unsigned, std::size_t>, std::vector<Tuple>> tables;
  while (!queue.empty()) {
    const unsigned v = queue.front();
    queue.pop_front();
    pieces[v].emplace(1, PlainPiece{v});
    for (unsigned size = 2; size <= n && !children[v].empty(); ++size) {
      std::vector<Tuple>& table = tables[{size - 1, children[v].size()}];
      if (table.empty()) plain_decompositions(size - 1, static_cast<unsigned>(children[v].size()), table);
      for (const Tuple& shares : table) {
        std::vector<std::vector<PlainPiece>> lists;
        std::size_t c = 0;
        for (const unsigned child : children[v]) {
          const unsigned share = shares[c++];
          if (share == 0) continue;
          lists.emplace_back();
          const auto [first, last] = pieces[child].equal_range(share);
          for (auto piece = first; piece != last; ++piece)
            lists.back().push_back(piece->second);
        }
        for (PlainPiece& piece : plain_join(lists)) {
          piece.push_back(v);
          pieces[v].emplace(size, piece);
          if (size != n) continue;
          std::sort(piece.begin(), piece.end());
          result.emplace(v, piece);
        }
      }
    }
    const unsigned p = parents[v];
    if (p == 0 || p >= parents.size()) continue;
    if (++finished[p] == children[p].size()) queue.push_back(p);
  }
  return result;
}

}  // namespace colx::reference
