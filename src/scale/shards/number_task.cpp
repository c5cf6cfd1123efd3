#include "scale/shards/number_task.h"

#include <algorithm>
#include <iostream>
#include <limits>
#include <optional>

#include <fmt/format.h>

#include "base/config.h"
#include "base/errors.h"
#include "base/limits.h"
#include "base/notifier.h"
#include "corpus/datafile_format.h"
#include "scale/engine/progress.h"
#include "scale/engine/texts_file.h"
#include "scale/shards/extracted_sentences.h"
#include "scale/shards/number_files.h"
#include "scale/shards/scan_task.h"
#include "scale/shards/shard_warnings.h"
#include "spill/damaged_file.h"

namespace colx::scale {

namespace {

constexpr std::size_t numbers_of_block = std::size_t{64} << 10;

// Puts shard after shard together.
class Numberer {
 public:
  Numberer(const WorkFolder& folder, const Plan& plan)
      : _folder(folder),
        _plan(plan),
        _shards(plan.shards.size()),
        _datafiles(plan.datafiles.size()),
        _lemmas(longest_text),
        _tags(longest_text) {}

  void run() {
    for (std::size_t k = 0; k < _plan.shards.size() && _failure.empty();) {
      std::size_t end = k;
      while (end < _plan.shards.size() && _plan.shards[end].datafile == _plan.shards[k].datafile)
        ++end;
      if (_plan.shards[k].datafiles > 1) {
        _take_datafiles(k);
      } else {
        _take_pieces(k, end);
      }
      k = end;
      Progress::set(k, _plan.shards.size());
    }
  }

  void save(std::uint64_t key) {
    TaskResult done(_folder, number_name, key);
    done.add_file("lemmas", _write_texts("lemmas", _lemmas));
    done.add_file("tags", _write_texts("tags", _tags));
    for (const auto& [name, mark] : _files)
      done.add_file(name, mark);
    Manifest& manifest = done.manifest();
    manifest.add("lemmas", _lemmas.size());
    manifest.add("tags", _tags.size());
    for (const NumberedShard& shard : _shards) {
      Manifest::Fields line{"shard", shard.used ? "1" : "0", std::to_string(shard.numbers)};
      for (const std::uint64_t sentences : shard.extracted_sentences)
        line.push_back(std::to_string(sentences));
      manifest.add(std::move(line));
    }
    for (const NumberedDatafile& datafile : _datafiles)
      manifest.add({"datafile", datafile.opened ? "1" : "0", std::to_string(datafile.words),
                    std::to_string(datafile.sentences)});
    for (Manifest::Fields& message : _messages)
      manifest.add(std::move(message));
    if (!_failure.empty()) manifest.add({"failure", _failure});
    done.save();
  }

 private:
  void _warn(std::string text) { _messages.push_back({"warning", std::move(text)}); }

  // Takes a shard of whole datafiles.
  void _take_datafiles(std::size_t k) {
    const ScannedShard shard = ScannedShard::from(_folder.result(scan_name(k)));
    _take_shard(k, shard, 0, 0);
    for (std::size_t i = 0; i < shard.datafiles.size() && _failure.empty(); ++i) {
      const std::size_t d = _plan.shards[k].datafile + i;
      const ScanResult& result = shard.datafiles[i];
      _add(d, result);
      if (result.unreadable) _fail_to_read(result, _plan.datafiles[d]);
      if (_failure.empty()) _count_extracted(d, {{k, i, result.segment, result.sentences}}, result.last_at_end);
    }
  }

  // Takes the shards of one datafile.
  void _take_pieces(std::size_t begin, std::size_t end) {
    const std::size_t d = _plan.shards[begin].datafile;
    const Datafile& datafile = _plan.datafiles[d];
    std::uint64_t expected = 0;
    std::uint32_t lines_before = 0;
    std::vector<SentencesOfShard> pieces;
    ScanResult last;
    for (std::size_t k = begin; k < end && _failure.empty(); ++k) {
      const ScannedShard shard = _agreed(k, expected);
      const ScanResult& result = shard.datafiles.at(0);
      _take_shard(k, shard, result.begin, lines_before);
      if (!result.opened) return;
      _add(d, result);
      pieces.push_back({k, 0, result.segment, result.sentences});
      lines_before += result.lines;
      expected = result.end;
      if (result.sentences > 0) last = result;
      if (result.unreadable) _fail_to_read(last, datafile);
      if (result.at_end) break;
    }
    if (_failure.empty()) _count_extracted(d, pieces, last.last_at_end);
  }

  void _add(std::size_t d, const ScanResult& result) {
    _datafiles[d].opened = result.opened;
    _datafiles[d].words += result.words;
    _datafiles[d].sentences += result.sentences;
  }

  void _fail_to_read(const ScanResult& last, const Datafile& datafile) {
    if (datafile.has_bar && last.last_unreadable) _warn("Progress bar update failed! Stopping progress bar display...");
    _failure = unreadable(datafile.path).what();
  }

  // What is known of a shard that begins at a place, which is where the one before ends.
  ScannedShard _agreed(std::size_t shard, std::uint64_t expected) {
    ScannedShard result = ScannedShard::from(_folder.result(scan_name(shard)));
    ScanResult& piece = result.datafiles.at(0);
    if (piece.has_no_begin(_plan.shards[shard]) && expected >= piece.end) piece.begin = piece.end = expected;
    if (piece.opened && piece.begin != expected) result = scan(_folder, _plan, shard, expected);
    return result;
  }

  // `begin`: of a piece of a datafile.
  void _take_shard(std::size_t shard, const ScannedShard& result, std::uint64_t begin, std::uint32_t lines_before) {
    _shards[shard].used = true;
    _shards[shard].extracted_sentences.assign(result.datafiles.size(), 0);
    const std::size_t lemmas_before = _lemmas.size();
    const std::size_t tags_before = _tags.size();
    if (result.overflow || !_take_texts(shard)) {
      _replay(shard, begin, lines_before, lemmas_before, tags_before);
      return;
    }
    if (lemmas_before <= limits::lemmas && _lemmas.size() > limits::lemmas) {
      _replay(shard, begin, lines_before, lemmas_before, tags_before);
    } else if (result.warnings > 0) {
      _messages.push_back({"told", std::to_string(shard), std::to_string(lines_before)});
    }
    // Where reading has failed it has ended.
    const std::size_t last = result.datafiles.size() - 1;
    if (const std::string& failure = result.datafiles[last].failure; _failure.empty() && !failure.empty())
      _failure = failure +
                 " Found while processing datafile: " + _plan.datafiles[_plan.shards[shard].datafile + last].path + "!";
  }

  // Reads the shard once more as ngrex would, because something happens in it that depends on what came before.
  void _replay(std::size_t shard, std::uint64_t begin, std::uint32_t lines_before, std::size_t lemmas_before,
               std::size_t tags_before) {
    StringStore<std::uint32_t> lemmas(longest_text);
    for (std::size_t i = 0; i < lemmas_before; ++i)
      lemmas.store(_lemmas[static_cast<std::uint32_t>(i)]);
    StringStore<std::uint8_t> tags(longest_text);
    for (std::size_t i = 0; i < tags_before; ++i)
      tags.store(_tags[static_cast<std::uint8_t>(i)]);
    const std::string file = fmt::format("replay-{}", shard);
    ShardWarningsWriter warnings(_folder.file(number_name, file));
    _failure = replay(_plan, shard, begin, lemmas, tags, warnings);
    _files.emplace_back(file, warnings.finish());
    _messages.push_back({"replay", file, std::to_string(lines_before)});
  }

  // Gives the texts of a shard their numbers. Returns false when there are too many.
  bool _take_texts(std::size_t shard) try {
    SegmentWriter numbers(numbers_file(_folder, shard), numbers_kind);
    std::string tags;
    for_each_text(_folder.file(scan_name(shard), "tags"),
                  [&](std::string_view text) { tags += static_cast<char>(_tags.store(text)); });
    numbers.add(tags);
    std::string lemmas;
    for_each_text(_folder.file(scan_name(shard), "lemmas"), [&](std::string_view text) {
      append_fixed(lemmas, _lemmas.store(text) % limits::lemmas);
      if (lemmas.size() < numbers_of_block * sizeof(std::uint32_t)) return;
      numbers.add(lemmas);
      lemmas.clear();
    });
    numbers.add(lemmas);
    _files.emplace_back(fmt::format("numbers-{}", shard), numbers.finish());
    _shards[shard].numbers = _files.back().second.checksum;
    return true;
  } catch (const index_overflow&) {
    return false;
  }

  void _count_extracted(std::size_t datafile, const std::vector<SentencesOfShard>& pieces, bool last_at_end) {
    std::uint64_t left = _datafiles[datafile].sentences;
    if (settings::context_window.size != 0)
      left = extracted_sentences(_folder, {pieces, last_at_end}, _plan.datafiles[datafile].has_bar);
    for (const SentencesOfShard& piece : pieces) {
      const std::uint64_t extracted = std::min(piece.count, left);
      _shards[piece.shard].extracted_sentences[piece.datafile] = extracted;
      left -= extracted;
    }
  }

  template <typename Index>
  FileMark _write_texts(std::string_view what, const StringStore<Index>& store) {
    TextsWriter texts(_folder.file(number_name, what));
    if (_failure.empty()) {
      for (std::size_t i = 0; i < store.size(); ++i)
        texts.add(store[static_cast<Index>(i)]);
    }
    return texts.finish();
  }

  const WorkFolder& _folder;
  const Plan& _plan;
  std::vector<NumberedShard> _shards;
  std::vector<NumberedDatafile> _datafiles;
  StringStore<std::uint32_t> _lemmas;
  StringStore<std::uint8_t> _tags;
  std::vector<Manifest::Fields> _messages;
  std::vector<std::pair<std::string, FileMark>> _files;
  std::string _failure;
};

}  // namespace

Numbering Numbering::from(const Manifest& manifest) {
  Numbering numbering;
  for (const Manifest::Fields& line : manifest.all("shard")) {
    NumberedShard& shard = numbering.shards.emplace_back();
    shard.used = line.at(1) == "1";
    shard.numbers = to_number(line.at(2));
    for (std::size_t i = 3; i < line.size(); ++i)
      shard.extracted_sentences.push_back(to_number(line[i]));
  }
  for (const Manifest::Fields& line : manifest.all("datafile"))
    numbering.datafiles.push_back({line.at(1) == "1", to_number(line.at(2)), to_number(line.at(3))});
  numbering.lemmas = manifest.number("lemmas");
  numbering.tags = manifest.number("tags");
  if (manifest.find("failure") != nullptr) numbering.failure = manifest.text("failure");
  return numbering;
}

std::uint64_t number_key(const WorkFolder& folder, const Plan& plan) {
  std::string key;
  append_fixed(key, plan.counting);
  for (std::size_t k = 0; k < plan.shards.size(); ++k)
    append_fixed(key, folder.mark(scan_name(k)));
  for (const Datafile& datafile : plan.datafiles)
    key += datafile.path + '\n' + (datafile.has_bar ? '1' : '0');
  return checksum(key);
}

void number_shards(const WorkFolder& folder, const Plan& plan) {
  Numberer numberer(folder, plan);
  numberer.run();
  numberer.save(number_key(folder, plan));  // some scans may be new
}

void tell_messages(const WorkFolder& folder, const Manifest& numbering, std::size_t& told) {
  const Notifier error(std::cerr);
  std::size_t number = 0;
  const auto warn = [&](std::string_view warning) {
    if (number++ < told) return;
    Progress::hide();
    error.warning(warning);
    ++told;
  };
  for (const Manifest::Fields& line : numbering.lines()) {
    if (line[0] == "warning") warn(line.at(1));
    if (line[0] == "told") {
      for_each_warning(folder.file(scan_name(to_number(line.at(1))), "warnings"),
                       static_cast<std::uint32_t>(to_number(line.at(2))), warn);
    }
    if (line[0] == "replay") {
      for_each_warning(folder.file(number_name, line.at(1)), static_cast<std::uint32_t>(to_number(line.at(2))), warn);
    }
  }
}

}  // namespace colx::scale
