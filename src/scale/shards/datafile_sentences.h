#pragma once

// The sentences of a whole datafile, from what the scans of its shards have left.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "corpus/sentence_source.h"
#include "scale/engine/plan.h"
#include "scale/engine/work_folder.h"
#include "scale/shards/shard_words.h"

namespace colx::scale {

// Sentences that a shard has of a datafile.
struct SentencesOfShard {
  std::size_t shard = 0;
  std::size_t datafile = 0;  // of the datafiles of the shard
  std::size_t segment = 0;   // of its file of words, with which they begin
  std::uint64_t count = 0;
};

// All sentences of a datafile.
struct SentencesOfDatafile {
  std::vector<SentencesOfShard> pieces;
  bool last_at_end = false;  // whether the end of the input was noticed while the last sentence was read
};

// The sentences of all datafiles, as far as their shards are used; none of those that could not be opened.
std::vector<SentencesOfDatafile> sentences_of_datafiles(const WorkFolder& folder, const Plan& plan,
                                                        const std::vector<bool>& used);

// Gives sentences as a parser of the datafile would, in calls of the same limits with the same end.
class DatafileSentences final : public SentenceSource {
 public:
  // `numbered`: words are to have the numbers of the corpus, which must be there, instead of those of their shard.
  DatafileSentences(const WorkFolder& folder, SentencesOfDatafile sentences, bool numbered);

  bool next(std::uint32_t limit, ContextWindow::Mode mode, WordQueue& words) override;
  const std::vector<SentenceExtent>& sentences() const override { return _sentences; }
  bool at_end() const override { return _at_end; }

 private:
  void _open(const SentencesOfShard& piece);
  void _look_ahead();

  const WorkFolder& _folder;
  SentencesOfDatafile _all;
  std::size_t _next_piece = 0;
  std::uint64_t _left = 0;  // of the piece in hand
  bool _numbered;
  std::vector<std::uint32_t> _lemma_numbers;
  std::vector<std::uint8_t> _tag_numbers;
  std::unique_ptr<ShardWordsReader> _reader;
  std::vector<PackedWord> _ahead;  // the sentence to be given next
  bool _any_ahead = false;
  bool _at_end = false;
  std::vector<SentenceExtent> _sentences;
};

}  // namespace colx::scale
