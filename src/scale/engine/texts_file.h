#pragma once

// Lists of texts in a file: the lemmas and tags of a shard, or of the corpus.

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "spill/encoding.h"
#include "spill/segment_file.h"

namespace colx::scale {

// Writes texts, in order, to a file of theirs.
class TextsWriter {
 public:
  explicit TextsWriter(std::string path) : _file(std::move(path), "text") {}

  void add(std::string_view text) {
    append_short(_block, text.size());
    _block.append(text);
    if (_block.size() >= block_size) _write();
  }

  FileMark finish() {
    if (!_block.empty()) _write();
    return _file.finish();
  }

 private:
  static constexpr std::size_t block_size = std::size_t{256} << 10;

  void _write() {
    _file.add(_block);
    _block.clear();
  }

  SegmentWriter _file;
  std::string _block;
};

// Calls `take(text)` for every text of a file, in order. Throws damaged_file.
template <typename Take>
void for_each_text(const std::string& path, const Take& take) {
  SegmentReader file(path, "text");
  for (std::size_t i = 0; i < file.segments(); ++i) {
    const std::string_view block = file.read(i);
    const char* const end = block.data() + block.size();
    for (const char* from = block.data(); from != end;) {
      const std::uint64_t size = get_short(from);
      take(std::string_view(from, size));
      from += size;
    }
  }
}

}  // namespace colx::scale
