#include "scale/counting/map_task.h"

#include <memory>

#include <fmt/format.h>

#include "base/config.h"
#include "corpus/datafile_format.h"
#include "corpus/dependencies.h"
#include "corpus/string_store.h"
#include "extraction/ntree.h"
#include "extraction/occurrence_members.h"
#include "extraction/tag_filters.h"
#include "scale/counting/run_table.h"
#include "scale/engine/filters.h"
#include "scale/engine/progress.h"
#include "scale/shards/scan_task.h"
#include "scale/shards/shard_words.h"
#include "spill/encoding.h"

namespace colx::scale {

namespace {

// Counts the N-grams of one shard.
class Mapper {
 public:
  Mapper(const WorkFolder& folder, const Plan& plan, std::size_t shard)
      : _folder(folder),
        _plan(plan),
        _shard(shard),
        _lemma_numbers(lemma_numbers(folder, shard)),
        _tag_numbers(tag_numbers(folder, shard)),
        _tags(longest_text),
        _table(plan.memory / 2) {
    load_tags(folder, _tags);
    add_morphologic_rules(plan, _rules);
    _filter = std::make_unique<MorphologicFilter>(_rules, _tags);
    _matched.resize(_rules.rules().size());
  }

  void run(const NumberedShard& numbered, TaskResult& done) {
    const ScannedShard scanned = ScannedShard::from(_folder.result(scan_name(_shard)));
    ShardWordsReader words(_folder.file(scan_name(_shard), "words"));
    for (const ScanResult& datafile : scanned.datafiles)
      _all_sentences += datafile.sentences;
    for (std::size_t d = 0; d < scanned.datafiles.size(); ++d)
      _take_datafile(words, scanned.datafiles[d].sentences, numbered.extracted_sentences.at(d), done.manifest());
    if (!_table.empty()) _write_run();
    for (std::size_t i = 0; i < _marks.size(); ++i)
      done.add_file(fmt::format("run-{}", i), _marks[i]);
    done.manifest().add("occurrences", _occurrences);
    done.manifest().add("runs", _marks.size());
  }

 private:
  void _take_datafile(ShardWordsReader& words, std::uint64_t sentences, std::uint64_t extracted, Manifest& manifest) {
    const std::uint64_t occurrences_before = _occurrences;
    const std::uint64_t passed_before = _passed;
    const std::vector<std::uint64_t> matched_before = _matched;
    std::span<const PackedWord> packed;
    for (std::uint64_t i = 0; i < sentences && words.next(packed); ++i) {
      if (_sentences++ % Progress::sentences_of_a_report == 0) Progress::set(_sentences, _all_sentences);
      if (i < extracted) _take(packed);
    }
    _flush();
    Manifest::Fields line{"datafile", std::to_string(_occurrences - occurrences_before),
                          std::to_string(_passed - passed_before)};
    for (std::size_t rule = 0; rule < matched_before.size(); ++rule)
      line.push_back(std::to_string(_matched[rule] - matched_before[rule]));
    manifest.add(std::move(line));
  }

  void _take(std::span<const PackedWord> packed) {
    _sentence.clear();
    std::uint16_t order = 0;
    for (const PackedWord& word : packed)
      _sentence.push_back({_lemma_numbers[word.lemma], _tag_numbers[word.tag], ++order, word.parent, word.dependency});
    const WordRange sentence(_sentence.data(), _sentence.data() + _sentence.size());
    _tree.build(sentence);
    _enumerator.extract_subtrees(_tree, settings::n, [&](std::span<const Position> positions) {
      _batch.add();
      std::array<NGram::Member, constants::max_grammity> members;
      occurrence_members(sentence, positions, members);
      for (unsigned m = 0; m < positions.size(); ++m)
        _batch.set_last(m, members[m]);
      if (_batch.full()) _flush();
    });
  }

  void _flush() {
    if (_table.full()) _write_run();
    _table.count(_batch, _occurrences);
    if (_filter->is_on()) {
      for (std::size_t i = 0; i < _batch.size(); ++i)
        if (_filter->admits(_batch, i, NGram::_full_ngram_type)) ++_passed;
      for (std::size_t rule = 0; rule < _matched.size(); ++rule)
        _matched[rule] += _rules.stats.matched[rule];
      _rules.stats.reset();
    } else {
      _passed += _batch.size();
    }
    _occurrences += _batch.size();
    _batch.clear();
  }

  void _write_run() { _marks.push_back(_table.write(run_file(_folder, _shard, _marks.size()), _plan.bucket_bits)); }

  const WorkFolder& _folder;
  const Plan& _plan;
  std::size_t _shard;
  std::vector<std::uint32_t> _lemma_numbers;
  std::vector<std::uint8_t> _tag_numbers;
  StringStore<std::uint8_t> _tags;
  MultiRulesFilter _rules;
  std::unique_ptr<MorphologicFilter> _filter;
  RunTable _table;
  std::vector<Word> _sentence;
  NTree _tree;
  SubtreeEnumerator _enumerator;
  OccurrenceBatch _batch;
  std::uint64_t _sentences = 0;
  std::uint64_t _all_sentences = 0;
  std::uint64_t _occurrences = 0;
  std::uint64_t _passed = 0;
  std::vector<std::uint64_t> _matched;  // by rule of the filter
  std::vector<FileMark> _marks;
};

}  // namespace

MapResult MapResult::from(const Manifest& manifest) {
  MapResult result;
  result.occurrences = manifest.number("occurrences");
  result.runs = manifest.number("runs");
  for (const Manifest::Fields& line : manifest.all("datafile")) {
    MappedDatafile& datafile = result.datafiles.emplace_back();
    datafile.occurrences = to_number(line.at(1));
    datafile.passed = to_number(line.at(2));
    for (std::size_t i = 3; i < line.size(); ++i)
      datafile.matched.push_back(to_number(line[i]));
  }
  return result;
}

std::string map_name(std::size_t shard) {
  return fmt::format("map-{}", shard);
}

std::string run_file(const WorkFolder& folder, std::size_t shard, std::size_t run) {
  return folder.file(map_name(shard), fmt::format("run-{}", run));
}

std::uint64_t map_key(const WorkFolder& folder, const Plan& plan, std::size_t shard, const NumberedShard& numbered) {
  std::string key;
  append_fixed(key, plan.counting);
  append_fixed(key, plan.bucket_bits);
  for (const std::uint64_t sentences : numbered.extracted_sentences)
    append_fixed(key, sentences);
  append_fixed(key, folder.mark(scan_name(shard)));
  append_fixed(key, numbered.numbers);
  return checksum(key);
}

void map_shard(const WorkFolder& folder, const Plan& plan, std::size_t shard, const NumberedShard& numbered) {
  TaskResult done(folder, map_name(shard), map_key(folder, plan, shard, numbered));
  string2dependency("");  // sets the code of "Head"
  Mapper(folder, plan, shard).run(numbered, done);
  done.save();
}

}  // namespace colx::scale
