#include "scale/contexts/collect_task.h"

#include <array>
#include <memory>
#include <numeric>

#include <fmt/format.h>

#include "base/config.h"
#include "corpus/buffer.h"
#include "corpus/datafile_format.h"
#include "corpus/dependencies.h"
#include "corpus/string_store.h"
#include "extraction/ntree.h"
#include "extraction/occurrence_members.h"
#include "extraction/tag_filters.h"
#include "scale/contexts/sighting_run.h"
#include "scale/engine/filters.h"
#include "scale/engine/progress.h"
#include "scale/shards/datafile_sentences.h"
#include "scale/shards/number_files.h"
#include "scale/shards/scan_task.h"
#include "spill/encoding.h"

namespace colx::scale {

namespace {

// The sentences that a shard has of a datafile, with those around them that windows reach.
struct Surroundings {
  SentencesOfDatafile sentences;  // of how it ends nothing is known, which makes no difference to what windows hold
  std::uint64_t before = 0;       // how many of them come before those of the shard
};

// Whether a shard is one of the pieces into which a datafile is cut.
bool _is_piece_of(const Plan& plan, const std::vector<NumberedShard>& numbered, std::size_t shard,
                  std::size_t datafile) {
  return shard < plan.shards.size() && plan.shards[shard].datafile == datafile && plan.shards[shard].datafiles == 1 &&
         numbered[shard].used;
}

std::vector<Surroundings> _surroundings(const WorkFolder& folder, const Plan& plan,
                                        const std::vector<NumberedShard>& numbered, std::size_t shard) {
  const ContextWindow& window = settings::context_window;
  const bool in_words = window.mode == ContextWindow::words;
  const auto scanned = [&](std::size_t k) { return ScannedShard::from(folder.result(scan_name(k))).datafiles; };
  std::vector<Surroundings> list;
  for (const ScanResult& result : scanned(shard)) {
    const std::size_t i = list.size();
    list.emplace_back().sentences.pieces.push_back({shard, i, result.segment, result.sentences});
  }
  if (plan.shards[shard].datafiles > 1) return list;
  Surroundings& around = list.at(0);
  std::vector<SentencesOfShard>& pieces = around.sentences.pieces;
  const std::size_t datafile = plan.shards[shard].datafile;
  // A window of sentences has none before that of the N-gram.
  std::uint64_t words = 0;
  for (std::size_t k = shard;
       in_words && words < window.size && k > 0 && _is_piece_of(plan, numbered, k - 1, datafile);) {
    const ScanResult result = scanned(--k).at(0);
    pieces.insert(pieces.begin(), {k, 0, result.segment, result.sentences});
    words += result.words;
    around.before += result.sentences;
  }
  std::uint64_t size = 0;
  for (std::size_t k = shard; size < window.size && _is_piece_of(plan, numbered, k + 1, datafile);) {
    const ScanResult result = scanned(++k).at(0);
    pieces.push_back({k, 0, result.segment, result.sentences});
    size += in_words ? result.words : result.sentences;
  }
  return list;
}

// Collects the contexts of one shard.
class ContextCollector {
 public:
  ContextCollector(const WorkFolder& folder, const Plan& plan, std::size_t shard, std::uint64_t all_sentences)
      : _folder(folder), _plan(plan), _shard(shard), _all_sentences(all_sentences), _tags(longest_text) {
    load_tags(folder, _tags);
    add_morphologic_rules(plan, _rules);
    add_context_rules(plan, _context_rules);
    _filter = std::make_unique<MorphologicFilter>(_rules, _tags);
    _context_filter = std::make_unique<ContextFilter>(_context_rules, _tags);
    _run = std::make_unique<SightingRun>(plan.memory / 2, *_filter);
    _bytes.resize(NGram::_types_count, 0);
  }

  // Takes as many sentences of a datafile.
  void take(const Surroundings& around, std::uint64_t extracted) {
    if (extracted == 0) return;
    DatafileSentences source(_folder, around.sentences, true);
    Buffer buffer(source, settings::context_window);
    buffer._init();
    for (std::uint64_t i = 0; i < around.before; ++i)
      buffer.next();
    _admitted_before.clear();
    for (std::uint64_t i = 0; i < extracted; ++i) {
      if (i > 0) buffer.next();
      if (_sentences++ % Progress::sentences_of_a_report == 0) Progress::set(_sentences, _all_sentences);
      _take_sentence(buffer);
    }
  }

  void finish(TaskResult& done) {
    _flush();
    _write_run();
    for (std::size_t i = 0; i < _marks.size(); ++i)
      done.add_file(fmt::format("run-{}", i), _marks[i]);
    done.manifest().add("occurrences", _occurrences);
    done.manifest().add("runs", _marks.size());
    for (const std::uint64_t bytes : _bytes)
      done.manifest().add("bytes", bytes);
  }

 private:
  // Words are known by their places in the datafile, modulo 2^32; those of a run lie near to each other. This one is
  // counted from the first that the run has of the datafile.
  std::uint32_t _place(const Buffer& buffer, WordIterator word) const {
    return buffer.words_count() - static_cast<std::uint32_t>(buffer.all().second - word) - _begin;
  }

  // Gives the run the words of the buffer that it does not have.
  void _add_words(const Buffer& buffer) {
    const WordRange all = buffer.all();
    if (_run->empty() && _batch.size() == 0) {
      _run->forget_words();
      _admitted_before.clear();
    }
    if (_admitted_before.empty()) _begin += _place(buffer, all.first);
    for (WordIterator word = all.first + (_admitted_before.size() - _place(buffer, all.first)); word != all.second;
         ++word) {
      _admitted_before.push_back(_run->words());
      if (_context_filter->admits(word->tag)) _run->add_word(TaggedLemma::pack(word->lemma, word->tag));
    }
  }

  // How many of the run's words come before a place.
  std::uint32_t _words_before(std::uint32_t place) const {
    return place < _admitted_before.size() ? _admitted_before[place] : _run->words();
  }

  void _take_sentence(const Buffer& buffer) {
    if (_run->full()) {
      _flush();
      _write_run();
    }
    _add_words(buffer);
    const WordRange sentence = buffer.current();
    _tree.build(sentence);
    _enumerator.extract_subtrees(_tree, settings::n, [&](std::span<const Position> positions) {
      _take_occurrence(buffer, positions);
      if (!_batch.full()) return;
      _flush();
      if (!_run->full()) return;
      _write_run();
      _add_words(buffer);
    });
  }

  void _take_occurrence(const Buffer& buffer, std::span<const Position> positions) {
    const WordRange sentence = buffer.current();
    _batch.add();
    std::array<NGram::Member, constants::max_grammity> members;
    occurrence_members(sentence, positions, members);
    Sighting& sighting = _sightings.emplace_back();
    WordRange window = buffer.all();
    for (unsigned m = 0; m < positions.size(); ++m) {
      _batch.set_last(m, members[m]);
      const WordIterator word = sentence.first + positions[m] - 1;
      const std::uint32_t before = _words_before(_place(buffer, word));
      sighting.words[m] = _words_before(_place(buffer, word) + 1) == before ? Sighting::none : before;
      if (settings::context_window.mode == ContextWindow::words && members[m].parent() == 0)
        window = buffer.context_range(word, word);
    }
    sighting.begin = _words_before(_place(buffer, window.first));
    sighting.end = _words_before(_place(buffer, window.second));
    const auto beside = [](const Word& word) { return TaggedLemma::pack(word.lemma, word.tag); };
    const WordIterator first = sentence.first + positions.front() - 1;
    const WordIterator after = sentence.first + positions.back();
    sighting.left = first == sentence.first ? Sighting::none : beside(first[-1]);
    sighting.right = after == sentence.second ? Sighting::none : beside(*after);
  }

  void _flush() {
    _run->take(_batch, _sightings, _occurrences);
    _occurrences += _batch.size();
    _batch.clear();
    _sightings.clear();
  }

  void _write_run() {
    if (_run->empty()) return;
    _marks.push_back(_run->write(sightings_file(_folder, _shard, _marks.size()), _plan.context_bits, _bytes));
    _admitted_before.clear();
  }

  const WorkFolder& _folder;
  const Plan& _plan;
  std::size_t _shard;
  std::uint64_t _all_sentences;
  std::uint64_t _sentences = 0;  // of them, taken
  StringStore<std::uint8_t> _tags;
  MultiRulesFilter _rules;
  UniRulesFilter _context_rules;
  std::unique_ptr<MorphologicFilter> _filter;
  std::unique_ptr<ContextFilter> _context_filter;
  std::unique_ptr<SightingRun> _run;
  std::uint32_t _begin = 0;                     // the place in the datafile of the run's first word
  std::vector<std::uint32_t> _admitted_before;  // by place from there on
  NTree _tree;
  SubtreeEnumerator _enumerator;
  OccurrenceBatch _batch;
  std::vector<Sighting> _sightings;  // by occurrence of the batch
  std::uint64_t _occurrences = 0;
  std::vector<FileMark> _marks;
  std::vector<std::uint64_t> _bytes;  // by type
};

}  // namespace

CollectResult CollectResult::from(const Manifest& manifest) {
  CollectResult result;
  result.occurrences = manifest.number("occurrences");
  result.runs = manifest.number("runs");
  for (const Manifest::Fields& line : manifest.all("bytes"))
    result.bytes.push_back(to_number(line.at(1)));
  return result;
}

std::string collect_name(std::size_t shard) {
  return fmt::format("collect-{}", shard);
}

std::string sightings_file(const WorkFolder& folder, std::size_t shard, std::size_t run) {
  return folder.file(collect_name(shard), fmt::format("run-{}", run));
}

std::uint64_t collect_key(const WorkFolder& folder, const Plan& plan, const std::vector<NumberedShard>& numbered,
                          std::size_t shard) {
  std::string key;
  append_fixed(key, plan.counting);
  append_fixed(key, plan.context_bits);
  for (const std::uint64_t sentences : numbered[shard].extracted_sentences)
    append_fixed(key, sentences);
  for (const Surroundings& around : _surroundings(folder, plan, numbered, shard)) {
    append_fixed(key, around.before);
    for (const SentencesOfShard& piece : around.sentences.pieces) {
      append_fixed(key, folder.mark(scan_name(piece.shard)));
      append_fixed(key, numbered[piece.shard].numbers);
    }
  }
  return checksum(key);
}

void collect(const WorkFolder& folder, const Plan& plan, const std::vector<NumberedShard>& numbered,
             std::size_t shard) {
  TaskResult done(folder, collect_name(shard), collect_key(folder, plan, numbered, shard));
  string2dependency("");  // sets the code of "Head"
  const std::vector<std::uint64_t>& extracted = numbered[shard].extracted_sentences;
  ContextCollector collector(folder, plan, shard,
                             std::accumulate(extracted.begin(), extracted.end(), std::uint64_t{0}));
  const std::vector<Surroundings> datafiles = _surroundings(folder, plan, numbered, shard);
  for (std::size_t d = 0; d < datafiles.size(); ++d)
    collector.take(datafiles[d], extracted.at(d));
  collector.finish(done);
  done.save();
}

}  // namespace colx::scale
