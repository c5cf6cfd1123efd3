#include "scale/shards/datafile_sentences.h"

#include <utility>

#include "scale/shards/number_files.h"
#include "scale/shards/scan_task.h"

namespace colx::scale {

std::vector<SentencesOfDatafile> sentences_of_datafiles(const WorkFolder& folder, const Plan& plan,
                                                        const std::vector<bool>& used) {
  std::vector<SentencesOfDatafile> list(plan.datafiles.size());
  for (std::size_t k = 0; k < used.size(); ++k) {
    if (!used[k]) continue;
    const ScannedShard shard = ScannedShard::from(folder.result(scan_name(k)));
    for (std::size_t i = 0; i < shard.datafiles.size(); ++i) {
      const ScanResult& result = shard.datafiles[i];
      if (!result.opened) continue;
      SentencesOfDatafile& sentences = list[plan.shards[k].datafile + i];
      sentences.pieces.push_back({k, i, result.segment, result.sentences});
      if (result.sentences > 0) sentences.last_at_end = result.last_at_end;
    }
  }
  return list;
}

DatafileSentences::DatafileSentences(const WorkFolder& folder, SentencesOfDatafile sentences, bool numbered)
    : _folder(folder), _all(std::move(sentences)), _numbered(numbered) {
  _look_ahead();
}

void DatafileSentences::_open(const SentencesOfShard& piece) {
  _reader = std::make_unique<ShardWordsReader>(_folder.file(scan_name(piece.shard), "words"), piece.segment);
  _left = piece.count;
  if (!_numbered) return;
  _lemma_numbers = lemma_numbers(_folder, piece.shard);
  _tag_numbers = tag_numbers(_folder, piece.shard);
}

void DatafileSentences::_look_ahead() {
  std::span<const PackedWord> sentence;
  for (;;) {
    if (_left > 0 && _reader->next(sentence)) {
      --_left;
      _ahead.assign(sentence.begin(), sentence.end());
      for (PackedWord& word : _ahead) {
        if (!_numbered) break;
        word.lemma = _lemma_numbers[word.lemma];
        word.tag = _tag_numbers[word.tag];
      }
      _any_ahead = true;
      return;
    }
    if (_next_piece == _all.pieces.size()) break;
    _open(_all.pieces[_next_piece++]);
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
    if (!_any_ahead && _all.last_at_end) {
      _at_end = true;
      break;
    }
    if (mode == ContextWindow::words && words_read >= limit) break;
    if (mode == ContextWindow::sentences && _sentences.size() >= limit) break;
  }
  return !_sentences.empty();
}

}  // namespace colx::scale
