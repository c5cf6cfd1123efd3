#pragma once

// Records on their way to a file, by blocks that are its segments.

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "spill/segment_file.h"

namespace colx::scale {

// Writes records to a file by blocks.
class RecordsWriter {
 public:
  // A block has so many bytes, or those of a record more.
  static constexpr std::size_t block_size = std::size_t{256} << 10;

  RecordsWriter(std::string path, std::string_view kind) : _file(std::move(path), kind) {}

  // Where the next record, which has no more than that many bytes, is to be written.
  char* room(std::size_t bytes) {
    if (_block.size() < _used + bytes) _block.resize(_used + bytes + block_size);
    return _block.data() + _used;
  }
  void wrote_to(const char* end) {
    _used = static_cast<std::size_t>(end - _block.data());
    if (_used >= block_size) _write();
  }

  FileMark finish() {
    if (_used > 0) _write();
    return _file.finish();
  }

 private:
  void _write() {
    _file.add({_block.data(), _used});
    _used = 0;
  }

  SegmentWriter _file;
  std::string _block;
  std::size_t _used = 0;
};

}  // namespace colx::scale
