#pragma once

// Where the sentences of a datafile come from: its text by way of the parser, or what another program kept of it.

#include <cstdint>
#include <vector>

#include "base/config.h"
#include "corpus/word_queue.h"

namespace colx {

// A sentence that was read: how long it is and where it stood.
struct SentenceExtent {
  std::uint32_t length = 0;  // in words
  std::uint32_t line = 0;  // of its first word, from 1, as warnings count them: a word makes one line however it stands
  std::uint64_t begin = 0;  // in bytes of the input, from where its first word's line begins
  std::uint64_t end = 0;    // to behind its last word's line; the line that ends the sentence is no part of it

  friend bool operator==(const SentenceExtent&, const SentenceExtent&) = default;
};

// Gives the sentences of one datafile one after another.
class SentenceSource {
 public:
  virtual ~SentenceSource() = default;

  // Appends the words of whole sentences to `words`, from where the last call stopped, and returns whether there was a
  // sentence at all. Stops at the end of the input or at a sentence end once this call has read `limit` sentences or
  // words, whichever `mode` counts.
  virtual bool next(std::uint32_t limit, ContextWindow::Mode mode, WordQueue& words) = 0;

  // The sentences that the last call of `next` appended, in reading order.
  virtual const std::vector<SentenceExtent>& sentences() const = 0;

  // Tells whether the end of the input has been noticed.
  virtual bool at_end() const = 0;

 protected:
  SentenceSource() = default;
  SentenceSource(const SentenceSource&) = default;
  SentenceSource& operator=(const SentenceSource&) = default;
};

}  // namespace colx
