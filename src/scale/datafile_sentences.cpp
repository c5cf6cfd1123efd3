#include "scale/datafile_sentences.h"

#include <utility>

namespace colx::scale {

DatafileSentences::DatafileSentences(std::vector<std::string> words_files, bool last_at_end)
    : _files(std::move(words_files)), _last_at_end(last_at_end) {
  _look_ahead();
}

void DatafileSentences::_look_ahead() {
  std::span<const PackedWord> sentence;
  for (;;) {
    if (_reader != nullptr && _reader->next(sentence)) {
      _ahead.assign(sentence.begin(), sentence.end());
      _any_ahead = true;
      return;
    }
    if (_file == _files.size()) break;
    _reader = std::make_unique<ShardWordsReader>(_files[_file++]);
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
