#pragma once

// The sentences of a whole datafile, from what the scans of its shards have left.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "corpus/sentence_source.h"
#include "scale/shard_words.h"

namespace colx::scale {

// Gives sentences as a parser of the datafile would, in calls of the same limits with the same end. Words have the
// numbers that they have in their shard.
class DatafileSentences final : public SentenceSource {
 public:
  // `last_at_end`: whether the end of the input was noticed while the last sentence was read.
  DatafileSentences(std::vector<std::string> words_files, bool last_at_end);

  bool next(std::uint32_t limit, ContextWindow::Mode mode, WordQueue& words) override;
  const std::vector<SentenceExtent>& sentences() const override { return _sentences; }
  bool at_end() const override { return _at_end; }

 private:
  void _look_ahead();

  std::vector<std::string> _files;
  std::size_t _file = 0;
  std::unique_ptr<ShardWordsReader> _reader;
  std::vector<PackedWord> _ahead;  // the sentence to be given next
  bool _any_ahead = false;
  bool _last_at_end;
  bool _at_end = false;
  std::vector<SentenceExtent> _sentences;
};

}  // namespace colx::scale
