#pragma once

// The words of the sentences in hand: a queue in one piece of memory.

#include <cstddef>
#include <vector>

#include "corpus/word.h"

namespace colx {

// Grows at the back and shrinks at both ends. Growing and dropping invalidate all iterators. Words dropped from the
// front are moved over when they outnumber those that are left, so that every operation costs a constant on average.
class WordQueue {
 public:
  WordIterator begin() const { return _words.data() + _front; }
  WordIterator end() const { return _words.data() + _words.size(); }
  std::size_t size() const { return _words.size() - _front; }
  bool empty() const { return size() == 0; }
  const Word& operator[](std::size_t i) const { return _words[_front + i]; }

  void push_back(const Word& word) { _words.push_back(word); }
  void drop_back(std::size_t count) { _words.resize(_words.size() - count); }
  void drop_front(std::size_t count) {
    _front += count;
    if (_front <= size()) return;
    _words.erase(_words.begin(), _words.begin() + static_cast<std::ptrdiff_t>(_front));
    _front = 0;
  }

 private:
  std::vector<Word> _words;
  std::size_t _front = 0;
};

}  // namespace colx
