#include "scale/shards/shard_words.h"

#include <cstring>
#include <utility>

namespace colx::scale {

namespace {

constexpr std::string_view words_kind = "word";
constexpr std::size_t words_block = std::size_t{256} << 10;

// Before the words of a sentence stands their number, in as many bytes as a word has, which keeps words aligned.
constexpr std::size_t unit = sizeof(PackedWord);
static_assert(unit == 8);

}  // namespace

ShardWordsWriter::ShardWordsWriter(std::string path) : _file(std::move(path), words_kind) {}

std::size_t ShardWordsWriter::begin_segment() {
  if (!_block.empty()) _file.add(_block);
  _block.clear();
  return _file.segments();
}

void ShardWordsWriter::add(WordRange sentence) {
  const std::uint64_t length = static_cast<std::uint64_t>(sentence.second - sentence.first);
  const std::size_t old_size = _block.size();
  _block.resize(old_size + unit * (length + 1));
  char* to = _block.data() + old_size;
  std::memcpy(to, &length, sizeof length);
  for (WordIterator word = sentence.first; word != sentence.second; ++word) {
    const PackedWord packed{word->lemma, word->parent, word->tag, word->dependency};
    to += unit;
    std::memcpy(to, &packed, unit);
  }
  if (_block.size() < words_block) return;
  _file.add(_block);
  _block.clear();
}

FileMark ShardWordsWriter::finish() {
  if (!_block.empty()) _file.add(_block);
  return _file.finish();
}

ShardWordsReader::ShardWordsReader(std::string path, std::size_t segment)
    : _file(std::move(path), words_kind), _segment(segment) {}

bool ShardWordsReader::next(std::span<const PackedWord>& sentence) {
  if (_place == _block.size()) {
    if (_segment >= _file.segments()) return false;
    _block.assign(_file.read(_segment++));
    _place = 0;
  }
  std::uint64_t length;
  if (_block.size() - _place < unit) _file.refuse("is damaged");
  std::memcpy(&length, _block.data() + _place, sizeof length);
  _place += unit;
  if ((_block.size() - _place) / unit < length) _file.refuse("is damaged");
  sentence = {reinterpret_cast<const PackedWord*>(_block.data() + _place), length};
  _place += length * unit;
  return true;
}

}  // namespace colx::scale
