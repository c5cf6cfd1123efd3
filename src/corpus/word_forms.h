#pragma once

// The forms of words as they stand in a datafile. Counting needs none, so a Word has no place for one; a program that
// shows sentences keeps them here, beside the queue of the words.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace colx {

// A growing list of texts in one piece of memory, which is used again after clear.
class WordForms {
 public:
  void push_back(std::string_view form) {
    _text.append(form);
    _ends.push_back(_text.size());
  }

  void drop_back(std::size_t count) {
    _ends.resize(_ends.size() - count);
    _text.resize(_begin(_ends.size()));
  }

  void clear() { drop_back(size()); }

  // Form i, counted from 0; valid until the list changes.
  std::string_view operator[](std::size_t i) const {
    return std::string_view(_text).substr(_begin(i), _ends[i] - _begin(i));
  }

  std::size_t size() const { return _ends.size(); }

 private:
  std::size_t _begin(std::size_t i) const { return i == 0 ? 0 : _ends[i - 1]; }

  std::string _text;  // all of them
  std::vector<std::size_t> _ends;
};

}  // namespace colx
