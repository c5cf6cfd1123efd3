#pragma once

// Whether the tags in XPOS are positional, so that they can be masked: of one length, but for a few.

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace colx {

// Counts the tags of words by their length in bytes, where a tag that is not specified (empty or "_") has none. Of the
// lengths the most frequent one is the common one; of several the shortest. Tags of another length, or without one, are
// odd.
class XposLengths {
 public:
  // `input` and `line` say where the word is.
  void add(std::string_view xpos, const std::string& input, std::uint64_t line);

  // The length that tags have or are to be brought to; 0 when they are not positional: when no word has a tag, or more
  // than 1 in 1,000 words have an odd one.
  std::size_t positional_length() const;

  // Whether further words are not to be looked at: more than 100 tags, and more than 1 in 100, are odd.
  bool decided() const;

  // Why tags are not positional, with the first that is odd and its place.
  std::string refusal() const;

 private:
  // Words whose tags are of the same length, and the first of them.
  struct Group {
    std::uint64_t words = 0;
    std::uint64_t first = 0;  // counted in words
    std::string tag;
    std::string place;
  };

  std::size_t _common() const;
  std::uint64_t _odd() const;

  std::map<std::size_t, Group> _groups;  // by length
  std::size_t _last_length = 0;
  Group* _last = nullptr;  // of that length; null: no word yet
  std::uint64_t _words = 0;
};

// Brings a tag to a length: fills it up with '-', or cuts it, but not within a character of UTF-8. A tag that is not
// specified becomes '-' throughout.
std::string brought_to_length(std::string_view xpos, std::size_t length);

}  // namespace colx
