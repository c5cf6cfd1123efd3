#pragma once

// Reading of datafiles: one word a line in six fields (order, form, lemma, tag, parent, relation), an empty line after
// each sentence. A sentence that is malformed, or whose words are not ordered 1, 2, 3 ..., is reported on the error
// channel and skipped whole; nothing in a datafile stops the run but a string store without room.
//
// Fields are read as a formatted input stream reads them, newlines being white space like any other, and exactly one
// character is taken after the sixth. This is part of the format: a blank at the end of a word line leaves the newline,
// which then reads as an empty line and ends the sentence.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <istream>
#include <string>
#include <vector>

#include "corpus/string_store.h"
#include "corpus/word.h"
#include "run/config.h"

namespace colx {

// Reads the sentences of one stream, which it does not own, and interns their lemmas and tags in the two stores.
class Parser {
 public:
  Parser(std::istream& stream, StringStore<std::uint32_t>& lemmas, StringStore<std::uint8_t>& tags);

  // Appends the words of whole sentences to `words`, from where the last call stopped, and returns whether there was a
  // sentence at all. Stops at the end of the input or at a sentence end once this call has read `limit` sentences or
  // words, whichever `mode` counts. Passes on index_overflow and string_too_long of the stores.
  bool next(std::uint32_t limit, ContextWindow::Mode mode, std::deque<Word>& words);

  // Word counts of the sentences that the last call of `next` appended, in reading order.
  const std::vector<std::uint32_t>& sentence_lengths() const { return _sentence_lengths; }

  // Tells whether the end of the input has been noticed.
  bool at_end() const { return _stream.eof(); }

 private:
  enum class Line { word, malformed, incomplete };

  Line _read_word_line();
  void _warn(const std::string& problem) const;
  void _skip_sentence();
  Word _make_word();

  std::istream& _stream;
  StringStore<std::uint32_t>& _lemmas;
  StringStore<std::uint8_t>& _tags;
  std::uint32_t _line = 0;
  std::vector<std::uint32_t> _sentence_lengths;

  // The fields of the line in hand, kept so that reading a word allocates nothing.
  std::uint32_t _order = 0;
  std::string _occurrence;
  std::string _lemma;
  std::string _tag;
  std::uint32_t _parent = 0;
  std::string _dependency;
};

// Cuts a lemma at its first technical suffix, that is, at the first of ' : ; ^ _.
void cut_lemma(std::string& lemma);

// Keeps the characters of a tag that the mask marks with '*', puts '-' for all others and brings the tag to the length
// of the mask. A null mask keeps nothing.
void mask_tag(std::string& tag, const char* mask);

}  // namespace colx
