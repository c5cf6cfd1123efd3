#pragma once

// The sentences of a shard as its scan leaves them: words by the numbers that lemmas and tags have within the shard, in
// order of first sight there.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "corpus/word_queue.h"
#include "spill/segment_file.h"

namespace colx::scale {

// A word, 8 bytes; its order is its place in the sentence.
struct PackedWord {
  std::uint32_t lemma;
  std::uint16_t parent;
  std::uint8_t tag;
  std::uint8_t dependency;
};

// Writes sentences to a file.
class ShardWordsWriter {
 public:
  explicit ShardWordsWriter(std::string path);

  // Has the next sentence begin a segment of the file, and returns the number of that.
  std::size_t begin_segment();

  // Appends the words of one sentence.
  void add(WordRange sentence);

  FileMark finish();

 private:
  SegmentWriter _file;
  std::string _block;
};

// Reads them back, in order.
class ShardWordsReader {
 public:
  // Begins with a segment of the file.
  explicit ShardWordsReader(std::string path, std::size_t segment = 0);

  // Gives the next sentence, valid until the next call; false behind the last one.
  bool next(std::span<const PackedWord>& sentence);

 private:
  SegmentReader _file;
  std::size_t _segment;
  std::string _block;  // a copy, so that words are aligned
  std::size_t _place = 0;
};

}  // namespace colx::scale
