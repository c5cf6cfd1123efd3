#pragma once

// The warnings of the parser about a shard. Their line numbers count from the beginning of the shard, as nobody knows
// yet how many lines come before it.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/warning_sink.h"
#include "spill/segment_file.h"

namespace colx::scale {

// Writes warnings, in order, to a file of theirs.
class ShardWarningsWriter {
 public:
  explicit ShardWarningsWriter(std::string path);

  // Takes a warning that was given about a line, whose number is in it or not.
  void add(std::string_view warning, std::uint32_t line);

  std::size_t size() const { return _size; }

  FileMark finish();

 private:
  SegmentWriter _file;
  std::string _block;
  std::size_t _size = 0;
};

// Hands all warnings of a file to `take`, lines counted from `lines_before`.
void for_each_warning(const std::string& path, std::uint32_t lines_before, const WarningSink& take);

}  // namespace colx::scale
