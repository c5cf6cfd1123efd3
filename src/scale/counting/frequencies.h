#pragma once

// The frequencies of the patterns of listed N-grams, on their way from the tasks that count patterns to the writing. A
// task goes through its pairs of a type and a partition one by one, and in each through all parts of the listing; the
// writing takes one part after another and wants all pairs of it. So the tasks collect what they have for each part,
// and write it part by part whenever the memory for that is full.
//
// A file is rounds, each with a segment for every part: for each pair of the round the number of bytes and the
// frequencies, in the order in which the N-grams of the part have left the pattern. The last segment says with which
// pair of the task each round ends.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "spill/encoding.h"
#include "spill/segment_file.h"

namespace colx::scale {

// Writes the file of one task.
class FrequenciesWriter {
 public:
  // Holds about `memory` bytes, but at least what one pair has, and 64 bytes for each part.
  FrequenciesWriter(std::string path, std::size_t parts, std::size_t memory);

  // Takes the encoded frequencies that the pair in hand has for a part. Parts come in their order, all of them.
  void add(std::size_t part, std::string_view frequencies);
  void end_pair();

  FileMark finish();

 private:
  void _write_round();

  SegmentWriter _file;
  std::size_t _memory;
  std::vector<std::string> _held;  // by part
  std::size_t _size = 0;           // of all that is held
  std::uint64_t _pairs = 0;        // that have ended
  std::string _ends;               // the same, round by round
};

// Reads the file of one task.
class FrequenciesReader {
 public:
  // Throws damaged_file.
  FrequenciesReader(std::string path, std::size_t parts, SegmentReader::Hold hold);

  // Appends the frequencies of a part to `bytes`, and for each pair of the task, in order, where in `bytes` those of it
  // begin. Throws damaged_file.
  void load(std::size_t part, std::string& bytes, std::vector<std::size_t>& begins);

 private:
  SegmentReader _file;
  std::size_t _parts;
  std::vector<std::uint64_t> _ends;  // of the rounds
};

}  // namespace colx::scale
