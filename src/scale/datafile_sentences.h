#pragma once

// The sentences of a whole datafile, from what the scans of its shards have left.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "corpus/sentence_source.h"
#include "scale/shard_words.h"
#include "scale/work_folder.h"

namespace colx::scale {

// Gives sentences as a parser of the datafile would, in calls of the same limits with the same end.
class DatafileSentences final : public SentenceSource {
 public:
  // Takes the shards of the datafile. `last_at_end`: whether the end of the input was noticed while the last sentence
  // was read. `numbered`: words are to have the numbers of the corpus, which must be there, instead of those of their
  // shard.
  DatafileSentences(const WorkFolder& folder, std::vector<std::size_t> shards, bool last_at_end, bool numbered);

  bool next(std::uint32_t limit, ContextWindow::Mode mode, WordQueue& words) override;
  const std::vector<SentenceExtent>& sentences() const override { return _sentences; }
  bool at_end() const override { return _at_end; }

 private:
  void _open_shard(std::size_t shard);
  void _look_ahead();

  const WorkFolder& _folder;
  std::vector<std::size_t> _shards;
  std::size_t _next_shard = 0;
  bool _numbered;
  std::vector<std::uint32_t> _lemma_numbers;
  std::vector<std::uint8_t> _tag_numbers;
  std::unique_ptr<ShardWordsReader> _reader;
  std::vector<PackedWord> _ahead;  // the sentence to be given next
  bool _any_ahead = false;
  bool _last_at_end;
  bool _at_end = false;
  std::vector<SentenceExtent> _sentences;
};

}  // namespace colx::scale
