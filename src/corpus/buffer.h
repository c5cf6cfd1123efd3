#pragma once

// A sliding window of whole sentences over one datafile: the current sentence and the sentences of its context window,
// read ahead from their source and dropped when they have left the window.

#include <cstddef>
#include <cstdint>
#include <deque>

#include "base/config.h"
#include "corpus/sentence_source.h"
#include "corpus/word.h"
#include "corpus/word_queue.h"

namespace colx {

// Serves the sentences of a source one after another. To be used in this order: construct, _init, then current and next
// in turn while next returns true. Passes on what the parser throws.
class Buffer {
 public:
  // The source must outlive the buffer.
  Buffer(SentenceSource& source, const ContextWindow& window);

  // Reads the first sentence and the window after it.
  void _init();

  // Tells whether any sentence is held.
  bool empty() const { return _words.empty(); }

  // The words of the current sentence.
  WordRange current() const;

  // All words held: in the sentences mode the current sentence and its context window.
  WordRange all() const { return {_words.begin(), _words.end()}; }

  // Moves on to the following sentence, reading and dropping as the window needs. Returns false when there is none.
  bool next();

  // The words within the radius around the span from the word `first` to the word `last`, both included. The radius
  // counts words here whatever the mode.
  WordRange context_range(WordIterator first, WordIterator last) const;

  // Words and sentences taken in so far; dropping does not lower them.
  std::uint32_t words_count() const { return _words_count; }
  std::uint32_t sentences_count() const { return _sentences_count; }

 private:
  // A sentence by its place in the datafile, counted in words taken in, so that dropping sentences renumbers nothing.
  struct Sentence {
    std::uint64_t start;
    std::uint32_t length;
  };

  void _push(std::uint32_t count, ContextWindow::Mode mode);
  std::uint32_t _pop();
  std::uint64_t _start(const Sentence& sentence) const { return sentence.start - _dropped_words; }

  SentenceSource& _source;
  WordQueue _words;
  std::deque<Sentence> _sentences;
  std::size_t _current = 0;  // place in _sentences
  ContextWindow::Mode _mode;
  std::uint32_t _radius;
  std::uint64_t _dropped_words = 0;
  std::uint32_t _words_count = 0;
  std::uint32_t _sentences_count = 0;
};

}  // namespace colx
