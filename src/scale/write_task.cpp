#include "scale/write_task.h"

#include <algorithm>
#include <iostream>
#include <limits>
#include <map>
#include <memory>
#include <new>
#include <ostream>
#include <string>

#include "base/config.h"
#include "base/errors.h"
#include "base/limits.h"
#include "base/notifier.h"
#include "companion/new_file.h"
#include "corpus/datafile_format.h"
#include "corpus/datafile_stats.h"
#include "corpus/string_store.h"
#include "output/members.h"
#include "output/result_lines.h"
#include "output/statistics.h"
#include "output/text_buffer.h"
#include "scale/context_task.h"
#include "scale/count_task.h"
#include "scale/filters.h"
#include "scale/frequencies.h"
#include "scale/layout.h"
#include "scale/map_task.h"
#include "scale/number_task.h"
#include "scale/order_task.h"
#include "scale/parts.h"
#include "scale/parts_file.h"
#include "scale/patterns.h"
#include "scale/progress.h"
#include "scale/reduce_task.h"
#include "scale/saturation.h"
#include "scale/unfinished_output.h"
#include "spill/encoding.h"

namespace colx::scale {

namespace {

// Makes a file that stands under its name when it is complete.
void _make_file(const WorkFolder& folder, const char* path, const PartsFile& content) {
  if (path == nullptr) return;
  try {
    const UnfinishedOutput unfinished(folder);
    NewFile file(path);
    unfinished.remember(file);
    write_parts(file, content);
    file.commit();
  } catch (const output_error&) {
    throw fatal_error(std::string("Cannot write to file: ") + path + "!");
  } catch (const std::bad_alloc&) {
    throw out_of_memory(std::string("while writing file: ") + path);
  }
}

// The same in one part.
template <typename WriteContent>
void _make_file(const WorkFolder& folder, const char* path, const WriteContent& write_content) {
  PartsFile content;
  content.parts = 1;
  content.make = [&](std::size_t, std::ostream& out) { write_content(out); };
  _make_file(folder, path, content);
}

std::uint32_t _wrapped(std::uint64_t number) {
  return static_cast<std::uint32_t>(number);
}

// Gives the frequencies of the patterns of listed records, part by part.
class Frequencies {
 public:
  Frequencies(const WorkFolder& folder, std::size_t tasks, std::size_t parts) {
    for (std::size_t task = 0; task < tasks; ++task)
      _files.emplace_back(folder.file(count_name(task), "frequencies"), parts, SegmentReader::hold_for(tasks));
  }

  void load(std::size_t part) {
    _bytes.clear();
    _begins.clear();
    for (FrequenciesReader& file : _files)
      file.load(part, _bytes, _begins);
    _next.clear();
    for (const std::size_t begin : _begins)
      _next.push_back(_bytes.data() + begin);
  }

  std::uint64_t next(std::size_t pair) { return get_short(_next[pair]); }

 private:
  std::vector<FrequenciesReader> _files;
  std::string _bytes;
  std::vector<std::size_t> _begins;  // by pair
  std::vector<const char*> _next;    // by pair
};

// What has been counted, ready to be written.
class Results {
 public:
  Results(const WorkFolder& folder, const Plan& plan)
      : _folder(folder),
        _plan(plan),
        _numbering(Numbering::from(folder.result(number_name))),
        _layout(Layout::from(folder, plan)),
        _parts(parts_of(folder, plan, _layout).size()) {
    for (const NumberedShard& shard : _numbering.shards)
      _used.push_back(shard.used);
    _occurrences = Occurrences::from(folder, _used).all;
  }

  // Whether some count is beyond what ngrex holds. No frequency is greater than the number of all N-grams.
  bool overflowing() const {
    std::uint64_t words = 0;
    for (const NumberedDatafile& datafile : _numbering.datafiles)
      words += datafile.words;
    return _occurrences > limits::frequency ||
           (settings::stats_file != nullptr && words > std::numeric_limits<std::uint32_t>::max());
  }

  void write_statistics(std::ostream& out) const {
    StoreSizes sizes;
    sizes.lemmas = _numbering.lemmas;
    sizes.tags = _numbering.tags;
    sizes.records.assign(NGram::_types_count, 0);
    sizes.records[NGram::_full_ngram_type] = _layout.listed;
    for (std::size_t task = 0; task < count_tasks(_plan, _layout).size(); ++task) {
      const std::vector<Manifest::Fields> lines = _folder.result(count_name(task)).all("different");
      for (std::size_t type = 1; type < NGram::_full_ngram_type; ++type)
        sizes.records[type] += to_number(lines.at(type).at(1));
    }
    write_stats(out, _datafiles(), !_plan.morphologic_rules.empty(), sizes);
  }

  void write_filter_statistics(std::ostream& out) const {
    MultiRulesFilter filter;
    add_morphologic_rules(_plan, filter);
    std::map<std::string, Filter::Stats> by_datafile;
    const std::vector<MappedDatafile> mapped = filter.is_on() ? _mapped() : std::vector<MappedDatafile>();
    for (std::size_t d = 0; d < mapped.size(); ++d) {
      if (!_numbering.datafiles[d].opened) continue;
      Filter::Stats stats = filter.file_stats;
      for (std::size_t rule = 0; rule < mapped[d].matched.size(); ++rule) {
        stats.matched[rule] += _wrapped(mapped[d].matched[rule]);
        filter.stats.matched[rule] += _wrapped(mapped[d].matched[rule]);
      }
      by_datafile.emplace(_plan.datafiles[d].path, stats);
    }
    write_morphologic_filter_stats(out, filter, by_datafile);
  }

  // The output datafile, in the parts in which the listing was put in order and one for what follows them.
  PartsFile output(std::size_t jobs) const {
    PartsFile content;
    content.parts = _parts + 1;
    content.processes = std::min<std::size_t>(jobs, _layout.listed / least_records_of_a_process + 1);
    content.memory = _plan.memory / 2;
    const auto listing = std::make_shared<Listed>(_folder, count_tasks(_plan, _layout).size(), _parts);
    content.make = [this, listing](std::size_t part, std::ostream& out) {
      TextBuffer text(out);
      if (part < _parts) {
        listing->frequencies.load(part);
        _write_part(part, *listing, text);
      } else {
        text << '\n';
      }
      text.flush();
    };
    return content;
  }

 private:
  // To make a process takes as long as to format so many records or less.
  static constexpr std::uint64_t least_records_of_a_process = 1024;

  // What the parts of the listing are written with.
  struct Listed {
    Listed(const WorkFolder& folder, std::size_t count_tasks, std::size_t parts)
        : lemmas(longest_text), tags(longest_text), frequencies(folder, count_tasks, parts) {
      load_lemmas(folder, lemmas);
      load_tags(folder, tags);
    }

    StringStore<std::uint32_t> lemmas;
    StringStore<std::uint8_t> tags;
    Frequencies frequencies;
    ResultLines result_lines;
  };

  // What was found in each datafile.
  std::vector<MappedDatafile> _mapped() const {
    std::vector<MappedDatafile> mapped(_plan.datafiles.size());
    for (std::size_t k = 0; k < _plan.shards.size(); ++k) {
      if (!_used[k]) continue;
      const MapResult result = MapResult::from(_folder.result(map_name(k)));
      for (std::size_t i = 0; i < result.datafiles.size(); ++i) {
        const MappedDatafile& piece = result.datafiles[i];
        MappedDatafile& whole = mapped[_plan.shards[k].datafile + i];
        whole.occurrences += piece.occurrences;
        whole.passed += piece.passed;
        whole.matched.resize(piece.matched.size());
        for (std::size_t rule = 0; rule < piece.matched.size(); ++rule)
          whole.matched[rule] += piece.matched[rule];
      }
    }
    return mapped;
  }

  std::vector<NamedDataFileStats> _datafiles() const {
    std::vector<NamedDataFileStats> list;
    const std::vector<MappedDatafile> mapped = _mapped();
    for (std::size_t d = 0; d < _plan.datafiles.size(); ++d) {
      const NumberedDatafile& numbered = _numbering.datafiles[d];
      if (!numbered.opened) continue;
      NamedDataFileStats& stats = list.emplace_back();
      stats.name = _plan.datafiles[d].path;
      stats.extracted_count = _wrapped(mapped[d].occurrences);
      stats.passed_count = _wrapped(mapped[d].passed);
      stats.filtered_count = _wrapped(mapped[d].occurrences - mapped[d].passed);
      // A datafile without sentences adds nothing, one that has some adds all that was read.
      stats.words_count = _wrapped(numbered.words);
      stats.sentences_count = _wrapped(numbered.sentences);
    }
    return list;
  }

  void _write_part(std::size_t part, Listed& listed, TextBuffer& text) const {
    const WordTexts texts{listed.lemmas, listed.tags};
    SegmentReader file(_folder.file(order_name(part), "ordered"), ordered_kind);
    const std::size_t full = NGram::_full_ngram_type;
    std::vector<Positions> positions;
    for (std::size_t type = 0; type < full; ++type)
      positions.emplace_back(static_cast<std::uint8_t>(type));
    std::vector<std::uint32_t> values(full + 1);
    values[0] = saturated(_occurrences);
    std::array<std::uint64_t, constants::max_grammity> hashes;
    Members members;
    for (std::size_t i = 0; i < file.segments(); ++i) {
      const std::string_view block = file.read(i);
      const char* const end = block.data() + block.size();
      for (const char* from = block.data(); from != end;) {
        load_members(from, settings::n, members);
        from += settings::n * NGram::Member::size;
        values[full] = saturated(get_short(from));
        for (unsigned m = 0; m < settings::n; ++m)
          hashes[m] = member_hash(members[m], m);
        for (std::size_t type = 1; type < full; ++type) {
          std::uint64_t hash = 0;
          for (unsigned k = 0; k < positions[type].count; ++k)
            hash += hashes[positions[type].at[k]];
          const std::size_t partition = bucket_of(hash, _layout.partition_bits);
          values[type] = saturated(
              listed.frequencies.next(pair_of(static_cast<std::uint8_t>(type), partition, _layout.partition_bits)));
        }
        if (values[full] < settings::sieves.frequency) continue;
        const std::string_view results = listed.result_lines.get(values);
        if (results.empty()) continue;
        for (unsigned m = 0; m < settings::n; ++m)
          _print_member(text, texts, m + 1, members[m]);
        text << results;
      }
    }
  }

  const WorkFolder& _folder;
  const Plan& _plan;
  Numbering _numbering;
  Layout _layout;
  std::size_t _parts;
  std::vector<bool> _used;
  std::uint64_t _occurrences = 0;
};

}  // namespace

void write_files(const WorkFolder& folder, const Plan& plan, std::size_t jobs) {
  const Results results(folder, plan);
  _make_file(folder, settings::stats_file, [&](std::ostream& out) { results.write_statistics(out); });
  _make_file(folder, settings::morphologic_filter_stats_file,
             [&](std::ostream& out) { results.write_filter_statistics(out); });
  const PartsFile output = results.output(jobs);
  Progress::begin_stage("write", output.parts);
  _make_file(folder, settings::output_file, output);
  _make_file(folder, settings::context_output_file, [&](std::ostream& out) { write_context_file(folder, out); });
  Progress::hide();
  if (results.overflowing())
    Notifier(std::cerr).warning(
        "Counts pass " + std::to_string(limits::frequency) +
        ", which is as far as ngrex counts! Frequencies stop there, and statistics begin again...");
}

}  // namespace colx::scale
