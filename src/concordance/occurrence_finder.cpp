#include "concordance/occurrence_finder.h"

namespace colx::concordance {

// Finds out which edges are wanted, and whether n - 1 of them hang together.
bool OccurrenceFinder::_may_hold_any(WordRange sentence) {
  const auto words = static_cast<std::size_t>(sentence.second - sentence.first);
  if (words < _n) return false;
  _is_wanted.assign(words + 1, 0);
  std::size_t wanted = 0;
  for (std::size_t i = 1; i <= words; ++i) {
    const Word& word = sentence.first[i - 1];
    if (word.parent == 0 || word.parent > words || !_wanted.has_edge(word, sentence.first[word.parent - 1])) continue;
    _is_wanted[i] = 1;
    ++wanted;
  }
  if (wanted + 1 < _n) return false;

  // Words in a cycle are in no piece.
  _find_cycles(sentence);
  for (std::size_t i = 1; i <= words; ++i)
    if (_is_wanted[i] != 0 && _is_in_cycle[sentence.first[i - 1].parent] != 0) _is_wanted[i] = 0;
  _wanted_below.assign(words + 1, 0);
  for (std::size_t i = 1; i <= words; ++i) {
    if (_is_wanted[i] == 0) continue;
    std::size_t top = i;
    while (_is_wanted[top] != 0)
      top = sentence.first[top - 1].parent;
    // As the search ends here, no long way is gone up often.
    if (++_wanted_below[top] + 1 >= _n) return true;
  }
  return false;
}

// Goes up from every wanted edge, but over no word twice.
void OccurrenceFinder::_find_cycles(WordRange sentence) {
  const auto words = static_cast<std::size_t>(sentence.second - sentence.first);
  _seen_from.assign(words + 1, 0);
  _is_in_cycle.assign(words + 1, 0);
  const auto parent_of = [&](std::size_t position) {
    const std::size_t parent = sentence.first[position - 1].parent;
    return parent <= words ? parent : 0;
  };
  for (std::size_t i = 1; i <= words; ++i) {
    if (_is_wanted[i] == 0) continue;
    std::size_t above = i;
    for (; above != 0 && _seen_from[above] == 0; above = parent_of(above))
      _seen_from[above] = static_cast<std::uint32_t>(i);
    if (above == 0 || _seen_from[above] != i) continue;
    for (; _is_in_cycle[above] == 0; above = parent_of(above))
      _is_in_cycle[above] = 1;
  }
}

WordRange OccurrenceFinder::_with_wanted_edges_only(WordRange sentence) {
  _words.assign(sentence.first, sentence.second);
  for (std::size_t i = 1; i <= _words.size(); ++i)
    if (_is_wanted[i] == 0) _words[i - 1].parent = 0;
  return {_words.data(), _words.data() + _words.size()};
}

}  // namespace colx::concordance
