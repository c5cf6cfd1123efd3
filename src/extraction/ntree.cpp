#include "extraction/ntree.h"

#include <algorithm>

namespace colx {

void NTree::build(WordRange sentence) {
  const auto words = static_cast<std::size_t>(sentence.second - sentence.first);
  _parents.assign(words + 1, 0);
  _offsets.assign(words + 2, 0);
  for (std::size_t i = 1; i <= words; ++i) {
    const Position parent = sentence.first[i - 1].parent;
    if (parent > words) continue;
    _parents[i] = parent;
    if (parent != 0) ++_offsets[parent + 1U];
  }
  for (std::size_t i = 1; i < _offsets.size(); ++i)
    _offsets[i] += _offsets[i - 1];
  // A counting sort by parent: positions are met in ascending order, so children are ascending.
  _children.resize(_offsets.back());
  for (std::size_t i = 1; i <= words; ++i) {
    if (_parents[i] != 0) _children[_offsets[_parents[i]]++] = static_cast<Position>(i);
  }
  std::copy_backward(_offsets.begin(), _offsets.end() - 1, _offsets.end());
  _offsets.front() = 0;
}

// Orders the words so that children come before their parents, and takes the size of the largest piece below each, as
// far as it matters. Words of a cycle, and above it, never come.
void SubtreeEnumerator::_order_words(const NTree& tree, unsigned n) {
  const std::size_t words = tree.size();
  _bottom_up.clear();
  _unfinished.resize(words + 1);
  _reach.assign(words + 1, 0);
  for (std::size_t i = 1; i <= words; ++i) {
    _unfinished[i] = static_cast<std::uint32_t>(tree.children(i).size());
    if (_unfinished[i] == 0) _bottom_up.push_back(static_cast<Position>(i));
  }
  for (std::size_t i = 0; i < _bottom_up.size(); ++i) {
    const Position position = _bottom_up[i];
    std::uint32_t reach = 1;
    for (const Position child : tree.children(position))
      reach += _reach[child];
    _reach[position] = std::min<std::uint32_t>(reach, n);
    const Position parent = tree.parent(position);
    if (parent != 0 && --_unfinished[parent] == 0) _bottom_up.push_back(parent);
  }
}

void SubtreeEnumerator::_list_smaller_pieces(const NTree& tree, unsigned n) {
  _lists.resize((tree.size() + 1) * constants::max_grammity);
  _pieces.resize(tree.size() + 1);
  for (std::size_t i = 1; i <= tree.size(); ++i) {
    _pieces[i] = static_cast<Position>(i);
    _list(i, 1) = {i, 1};
  }
  for (const Position position : _bottom_up) {
    // Nobody reads the lists of a word without parent.
    if (tree.parent(position) == 0) continue;
    for (unsigned size = 2; size < n; ++size) {
      List& list = _list(position, size);
      list = {_pieces.size(), 0};
      if (_reach[position] < size) continue;
      _for_each_piece(tree, position, size, [&](std::span<Position> piece) {
        _pieces.insert(_pieces.end(), piece.begin(), piece.end());
        ++list.count;
      });
    }
  }
}

}  // namespace colx
