#pragma once

// Where the N-grams of a table come from.

#include "rows/block.h"

namespace colx::table {

// A sequence of N-grams, all of the same N.
class BlockSource {
 public:
  BlockSource() = default;
  virtual ~BlockSource() = default;

  BlockSource(const BlockSource&) = delete;
  BlockSource& operator=(const BlockSource&) = delete;

  // Takes the next N-gram, whose texts stay valid until the next call; false at the end. Throws input_error.
  virtual bool next(Block& block) = 0;
};

}  // namespace colx::table
