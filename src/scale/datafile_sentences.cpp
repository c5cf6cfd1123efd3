#include "scale/datafile_sentences.h"

#include <utility>

#include "scale/number_files.h"
#include "scale/scan_task.h"

namespace colx::scale {

DatafileSentences::DatafileSentences(const WorkFolder& folder, std::vector<std::size_t> shards, bool last_at_end,
                                     bool numbered)
    : _folder(folder), _shards(std::move(shards)), _numbered(numbered), _last_at_end(last_at_end) {
  _look_ahead();
}

void DatafileSentences::_open_shard(std::size_t shard) {
  _reader = std::make_unique<ShardWordsReader>(_folder.file(scan_name(shard), "words"));
  if (!_numbered) return;
  _lemma_numbers = lemma_numbers(_folder, shard);
  _tag_numbers = tag_numbers(_folder, shard);
}

void DatafileSentences::_look_ahead() {
  std::span<const PackedWord> sentence;
  for (;;) {
    if (_reader != nullptr && _reader->next(sentence)) {
      _ahead.assign(sentence.begin(), sentence.end());
      for (PackedWord& word : _ahead) {
        if (!_numbered) break;
        word.lemma = _lemma_numbers[word.lemma];
        word.tag = _tag_numbers[word.tag];
      }
      _any_ahead = true;
      return;
    }
    if (_next_shard == _shards.size()) break;
    _open_shard(_shards[_next_shard++]);
  }
  _any_ahead = false;
}

bool DatafileSentences::next(std::uint32_t limit, ContextWindow::Mode mode, WordQueue& words) {
  _sentences.clear();
  std::uint32_t words_read = 0;
  for (;;) {
    if (!_any_ahead) {
      _at_end = true;
      break;
    }
    std::uint16_t order = 0;
    for (const PackedWord& word : _ahead)
      words.push_back({word.lemma, word.tag, ++order, word.parent, word.dependency});
    SentenceExtent extent;
    extent.length = static_cast<std::uint32_t>(_ahead.size());
    _sentences.push_back(extent);
    words_read += extent.length;
    _look_ahead();
    if (!_any_ahead && _last_at_end) {
      _at_end = true;
      break;
    }
    if (mode == ContextWindow::words && words_read >= limit) break;
    if (mode == ContextWindow::sentences && _sentences.size() >= limit) break;
  }
  return !_sentences.empty();
}

}  // namespace colx::scale
