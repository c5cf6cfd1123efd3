#include "scale/shards/scan_task.h"

#include <fcntl.h>

#include <algorithm>
#include <istream>
#include <memory>
#include <string_view>

#include <fmt/format.h>

#include "base/config.h"
#include "base/errors.h"
#include "companion/errors.h"
#include "corpus/datafile_format.h"
#include "corpus/parser.h"
#include "corpus/store_overflow.h"
#include "corpus/string_store.h"
#include "scale/engine/progress.h"
#include "scale/engine/texts_file.h"
#include "scale/shards/shard_text.h"
#include "scale/shards/shard_warnings.h"
#include "scale/shards/shard_words.h"

namespace colx::scale {

namespace {

// A descriptor for a datafile, or nothing when it could not be opened for the plan either. Throws input_error.
std::optional<Descriptor> _open(const Datafile& datafile) {
  if (!datafile.was_opened()) return std::nullopt;
  const int number = ::open(datafile.source.c_str(), O_RDONLY | O_CLOEXEC);
  if (number < 0) throw input_error(fmt::format("cannot open {} for reading: {}", datafile.path, system_reason()));
  return Descriptor(number);
}

// The lines with which ngrex warns before it reads a datafile, or a piece that begins it.
void _warn_of(const Datafile& datafile, bool opened, bool is_first, ShardWarningsWriter& warnings) {
  if (!opened) warnings.add("Input datafile: " + datafile.path + " cannot be opened for reading! Skipping...", 0);
  if (opened && is_first && !datafile.has_bar)
    warnings.add("Progress bar initialization failed! Going on without progress bar display...", 0);
}

// The bytes of a datafile that belong to a shard, about.
struct Range {
  std::uint64_t begin;
  std::uint64_t soft_end;  // where a parser that is in step there has no sentence in hand
};

// `begin`: where the range begins; without it where a sentence seems to begin.
Range _range_of(const Descriptor& file, const Datafile& datafile, const Shard& shard,
                std::optional<std::uint64_t> begin) {
  if (!begin) begin = find_cut(file, datafile.path, shard.begin, shard.end);
  if (shard.is_last) return {begin.value_or(datafile.size), datafile.size};
  // Where there are no empty lines, not every shard is to look for the next one up to the end of the datafile.
  if (!begin) return {shard.end, shard.end};
  return {*begin, find_cut(file, datafile.path, shard.end, datafile.size).value_or(datafile.size)};
}

// The bytes of a datafile that belong to a shard, and a parser over them.
class Reading {
 public:
  // `begin`: where the parser begins; without it where a sentence seems to begin.
  Reading(const Descriptor& file, const Datafile& datafile, const Shard& shard, std::optional<std::uint64_t> begin,
          StringStore<std::uint32_t>& lemmas, StringStore<std::uint8_t>& tags, const WarningSink& warn)
      : _range(_range_of(file, datafile, shard, begin)),
        _text(file, _range.begin, _range.soft_end),
        _stream(&_text),
        _parser(std::make_unique<Parser>(_stream, lemmas, tags, warn)) {
    if (!shard.is_last)
      _parser->stop_behind(static_cast<std::int64_t>(_range.soft_end) - static_cast<std::int64_t>(_range.begin));
  }

  Parser& parser() { return *_parser; }
  bool failed() const { return _stream.fail(); }
  std::uint64_t begin() const { return _range.begin; }
  std::uint64_t size() const { return _range.soft_end - std::min(_range.begin, _range.soft_end); }  // about
  std::uint64_t end() const {
    return _range.begin + static_cast<std::uint64_t>(std::max<std::int64_t>(_parser->position(), 0));
  }

 private:
  Range _range;
  ShardText _text;
  std::istream _stream;
  std::unique_ptr<Parser> _parser;
};

// Reads one shard.
class Scanner {
 public:
  Scanner(const WorkFolder& folder, const Plan& plan, std::size_t shard)
      : _plan(plan),
        _shard(plan.shards[shard]),
        _folder(folder),
        _name(scan_name(shard)),
        _done(folder, _name, plan.key_of_shard(shard)),
        _lemmas(longest_text),
        _tags(longest_text),
        _warnings(folder.file(_name, "warnings")),
        _words(folder.file(_name, "words")) {}

  ScannedShard run(std::optional<std::uint64_t> begin) {
    for (std::size_t d = _shard.datafile; d < _shard.end_datafile(); ++d) {
      const ScanResult& result = _result.datafiles.emplace_back(_read(_plan.datafiles[d], begin));
      if (_result.overflow || result.unreadable || !result.failure.empty()) break;  // a run ends here
    }
    _result.warnings = _warnings.size();
    _done.add_file("words", _words.finish());
    _done.add_file("warnings", _warnings.finish());
    if (!_result.overflow) {  // whoever needs the texts of others will read the shard again
      _done.add_file("lemmas", _write_texts("lemmas", _lemmas));
      _done.add_file("tags", _write_texts("tags", _tags));
    }
    _result.put_into(_done.manifest());
    _done.save();
    return std::move(_result);
  }

 private:
  ScanResult _read(const Datafile& datafile, std::optional<std::uint64_t> begin) {
    const std::optional<Descriptor> file = _open(datafile);
    _warn_of(datafile, file.has_value(), _shard.begin == 0, _warnings);
    ScanResult result;
    if (!file) return result;
    result.opened = true;
    const Parser* reader = nullptr;
    Reading reading(*file, datafile, _shard, begin, _lemmas, _tags, [&](std::string_view warning) {
      // The lemmas that matter are those of the whole corpus.
      if (warning.find("detected at line") != std::string_view::npos) _warnings.add(warning, reader->lines());
    });
    reader = &reading.parser();
    result.begin = reading.begin();
    result.segment = _words.begin_segment();
    try {
      _read_sentences(reading, result);
    } catch (const index_overflow&) {
      _result.overflow = true;
    } catch (const string_too_long& error) {
      result.failure = error.what();
    }
    result.at_end = reader->at_end();
    result.unreadable = reading.failed();
    if (result.unreadable && datafile.was_read()) throw unreadable(datafile.path);
    result.end = reading.end();
    result.lines = reader->lines();
    return result;
  }

  void _read_sentences(Reading& reading, ScanResult& result) {
    WordQueue queue;
    while (reading.parser().next(1, ContextWindow::sentences, queue)) {
      if (result.sentences++ % Progress::sentences_of_a_report == 0) _say_progress(reading);
      result.words += queue.size();
      _words.add({queue.begin(), queue.end()});
      queue.drop_front(queue.size());
      result.last_at_end = reading.parser().at_end();
      result.last_unreadable = reading.failed();
      if (only_first_sentence()) return;
    }
  }

  void _say_progress(const Reading& reading) const {
    const auto read = static_cast<double>(reading.end() - reading.begin());
    const double part = read / static_cast<double>(std::max<std::uint64_t>(reading.size(), 1));
    Progress::set((static_cast<double>(_result.datafiles.size()) + std::min(part, 1.0)) /
                  static_cast<double>(_shard.datafiles));
  }

  template <typename Index>
  FileMark _write_texts(std::string_view what, const StringStore<Index>& store) {
    TextsWriter texts(_folder.file(_name, what));
    for (std::size_t i = 0; i < store.size(); ++i)
      texts.add(store[static_cast<Index>(i)]);
    return texts.finish();
  }

  const Plan& _plan;
  const Shard& _shard;
  const WorkFolder& _folder;
  std::string _name;
  TaskResult _done;
  StringStore<std::uint32_t> _lemmas;
  StringStore<std::uint8_t> _tags;
  ShardWarningsWriter _warnings;
  ShardWordsWriter _words;
  ScannedShard _result;
};

// Reads a datafile of a shard once more. Returns the failure that ends the run in it, or an empty text.
std::string _replay(const Datafile& datafile, const Shard& shard, std::uint64_t begin,
                    StringStore<std::uint32_t>& lemmas, StringStore<std::uint8_t>& tags,
                    ShardWarningsWriter& warnings) {
  const std::optional<Descriptor> file = _open(datafile);
  _warn_of(datafile, file.has_value(), shard.begin == 0, warnings);
  if (!file) return "";
  const Parser* reader = nullptr;
  Reading reading(*file, datafile, shard, begin, lemmas, tags,
                  [&](std::string_view warning) { warnings.add(warning, reader->lines()); });
  reader = &reading.parser();
  try {
    WordQueue queue;
    while (reading.parser().next(1, ContextWindow::sentences, queue) && !only_first_sentence())
      queue.drop_front(queue.size());
    if (reading.failed() && datafile.was_read()) throw unreadable(datafile.path);
  } catch (const index_overflow&) {
    return explain_overflow(lemmas, tags);
  } catch (const string_too_long& error) {
    return std::string(error.what()) + " Found while processing datafile: " + datafile.path + "!";
  }
  return "";
}

}  // namespace

std::string replay(const Plan& plan, std::size_t shard, std::uint64_t begin, StringStore<std::uint32_t>& lemmas,
                   StringStore<std::uint8_t>& tags, ShardWarningsWriter& warnings) {
  const Shard& piece = plan.shards[shard];
  std::string failure;
  for (std::size_t d = piece.datafile; d < piece.end_datafile() && failure.empty(); ++d)
    failure = _replay(plan.datafiles[d], piece, begin, lemmas, tags, warnings);
  return failure;
}

ScannedShard ScannedShard::from(const Manifest& manifest) {
  ScannedShard shard;
  shard.warnings = manifest.number("warnings");
  shard.overflow = manifest.number("overflow") != 0;
  for (const Manifest::Fields& line : manifest.all("datafile")) {
    ScanResult& result = shard.datafiles.emplace_back();
    std::size_t field = 0;
    const auto next = [&] { return to_number(line.at(++field)); };
    result.opened = next() != 0;
    result.begin = next();
    result.end = next();
    result.at_end = next() != 0;
    result.last_at_end = next() != 0;
    result.unreadable = next() != 0;
    result.last_unreadable = next() != 0;
    result.lines = static_cast<std::uint32_t>(next());
    result.sentences = next();
    result.words = next();
    result.segment = next();
    result.failure = line.at(++field);
  }
  return shard;
}

void ScannedShard::put_into(Manifest& manifest) const {
  manifest.add("warnings", warnings);
  manifest.add("overflow", overflow);
  for (const ScanResult& result : datafiles) {
    Manifest::Fields line{"datafile"};
    for (const std::uint64_t number :
         {std::uint64_t{result.opened}, result.begin, result.end, std::uint64_t{result.at_end},
          std::uint64_t{result.last_at_end}, std::uint64_t{result.unreadable}, std::uint64_t{result.last_unreadable},
          std::uint64_t{result.lines}, result.sentences, result.words, std::uint64_t{result.segment}})
      line.push_back(std::to_string(number));
    line.push_back(result.failure);
    manifest.add(std::move(line));
  }
}

std::string scan_name(std::size_t shard) {
  return fmt::format("scan-{}", shard);
}

ScannedShard scan(const WorkFolder& folder, const Plan& plan, std::size_t shard, std::optional<std::uint64_t> begin) {
  return Scanner(folder, plan, shard).run(begin);
}

}  // namespace colx::scale
