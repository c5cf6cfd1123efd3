#include "scale/scan_task.h"

#include <fcntl.h>

#include <algorithm>
#include <istream>
#include <memory>
#include <string_view>

#include <fmt/format.h>

#include "base/config.h"
#include "base/errors.h"
#include "base/files.h"
#include "corpus/datafile_format.h"
#include "corpus/parser.h"
#include "corpus/store_overflow.h"
#include "corpus/string_store.h"
#include "scale/shard_text.h"
#include "scale/shard_warnings.h"
#include "scale/shard_words.h"
#include "scale/texts_file.h"

namespace colx::scale {

namespace {

// A descriptor for a datafile, or nothing when ngrex could not open it either.
std::optional<Descriptor> _open(const std::string& path) {
  if (!open_input(path).is_open()) return std::nullopt;
  const int number = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (number < 0) return std::nullopt;
  return Descriptor(number);
}

// Reads one shard.
class Scanner {
 public:
  Scanner(const WorkFolder& folder, const Plan& plan, std::size_t shard)
      : _folder(folder),
        _name(scan_name(shard)),
        _shard(plan.shards[shard]),
        _datafile(plan.datafiles[_shard.datafile]),
        _key(plan.key_of_shard(shard)) {}

  ScanResult run(std::optional<std::uint64_t> begin) {
    TaskResult done(_folder, _name, _key);
    if (const std::optional<Descriptor> file = _open(_datafile.source)) {
      _result.opened = true;
      const bool is_first = _shard.begin == 0;
      _result.begin = begin ? *begin : is_first ? 0 : find_cut(*file, _datafile.path, _shard.begin, _datafile.size);
      _read(*file, done);
    }
    _result.put_into(done.manifest());
    done.save();
    return _result;
  }

 private:
  void _read(const Descriptor& file, TaskResult& done) {
    const std::uint64_t soft_end =
        _shard.is_last ? _datafile.size : find_cut(file, _datafile.path, _shard.end, _datafile.size);
    ShardText text(file, _result.begin, soft_end);
    std::istream stream(&text);
    StringStore<std::uint32_t> lemmas(longest_text);
    StringStore<std::uint8_t> tags(longest_text);
    ShardWarningsWriter warnings(_folder.file(_name, "warnings"));
    const Parser* reader = nullptr;
    const auto parser = std::make_unique<Parser>(stream, lemmas, tags, [&](std::string_view warning) {
      // The lemmas that matter are those of the whole corpus.
      if (warning.find("detected at line") != std::string_view::npos) warnings.add(warning, reader->lines());
    });
    reader = parser.get();
    if (!_shard.is_last)
      parser->stop_behind(static_cast<std::int64_t>(soft_end) - static_cast<std::int64_t>(_result.begin));
    ShardWordsWriter words(_folder.file(_name, "words"));
    try {
      _read_sentences(*parser, stream, words);
    } catch (const index_overflow&) {
      _result.overflow = true;
    } catch (const string_too_long& error) {
      _result.failure = error.what();
    }
    _result.at_end = parser->at_end();
    _result.unreadable = stream.fail();
    _result.end = _result.begin + static_cast<std::uint64_t>(std::max<std::int64_t>(parser->position(), 0));
    _result.lines = parser->lines();
    _result.lemmas = lemmas.size();
    _result.tags = tags.size();
    _result.warnings = warnings.size();
    done.add_file("words", words.finish());
    done.add_file("warnings", warnings.finish());
    if (_result.overflow) return;  // whoever needs the texts will read the shard again
    done.add_file("lemmas", _write_texts("lemmas", lemmas));
    done.add_file("tags", _write_texts("tags", tags));
  }

  void _read_sentences(Parser& parser, std::istream& stream, ShardWordsWriter& words) {
    WordQueue queue;
    while (parser.next(1, ContextWindow::sentences, queue)) {
      ++_result.sentences;
      _result.words += queue.size();
      words.add({queue.begin(), queue.end()});
      queue.drop_front(queue.size());
      _result.last_at_end = parser.at_end();
      _result.last_unreadable = stream.fail();
      if (only_first_sentence()) return;
    }
  }

  template <typename Index>
  FileMark _write_texts(std::string_view what, const StringStore<Index>& store) {
    TextsWriter texts(_folder.file(_name, what));
    for (std::size_t i = 0; i < store.size(); ++i)
      texts.add(store[static_cast<Index>(i)]);
    return texts.finish();
  }

  const WorkFolder& _folder;
  std::string _name;
  const Shard& _shard;
  const Datafile& _datafile;
  std::uint64_t _key;
  ScanResult _result;
};

}  // namespace

std::string replay(const Plan& plan, std::size_t shard, std::uint64_t begin, StringStore<std::uint32_t>& lemmas,
                   StringStore<std::uint8_t>& tags, ShardWarningsWriter& warnings) {
  const Shard& piece = plan.shards[shard];
  const Datafile& datafile = plan.datafiles[piece.datafile];
  const std::optional<Descriptor> file = _open(datafile.source);
  if (!file) return unreadable(datafile.path).what();
  const std::uint64_t soft_end =
      piece.is_last ? datafile.size : find_cut(*file, datafile.path, piece.end, datafile.size);
  ShardText text(*file, begin, soft_end);
  std::istream stream(&text);
  const Parser* reader = nullptr;
  const auto parser = std::make_unique<Parser>(
      stream, lemmas, tags, [&](std::string_view warning) { warnings.add(warning, reader->lines()); });
  reader = parser.get();
  if (!piece.is_last) parser->stop_behind(static_cast<std::int64_t>(soft_end) - static_cast<std::int64_t>(begin));
  try {
    WordQueue queue;
    while (parser->next(1, ContextWindow::sentences, queue) && !only_first_sentence())
      queue.drop_front(queue.size());
  } catch (const index_overflow&) {
    return explain_overflow(lemmas, tags);
  } catch (const string_too_long& error) {
    return std::string(error.what()) + " Found while processing datafile: " + datafile.path + "!";
  }
  return "";
}

ScanResult ScanResult::from(const Manifest& manifest) {
  ScanResult result;
  result.opened = manifest.number("opened") != 0;
  result.begin = manifest.number("begin");
  result.end = manifest.number("end");
  result.at_end = manifest.number("at_end") != 0;
  result.last_at_end = manifest.number("last_at_end") != 0;
  result.unreadable = manifest.number("unreadable") != 0;
  result.last_unreadable = manifest.number("last_unreadable") != 0;
  result.lines = static_cast<std::uint32_t>(manifest.number("lines"));
  result.sentences = manifest.number("sentences");
  result.words = manifest.number("words");
  result.lemmas = manifest.number("lemmas");
  result.tags = manifest.number("tags");
  result.warnings = manifest.number("warnings");
  result.failure = manifest.text("failure");
  result.overflow = manifest.number("overflow") != 0;
  return result;
}

void ScanResult::put_into(Manifest& manifest) const {
  manifest.add("opened", opened);
  manifest.add("begin", begin);
  manifest.add("end", end);
  manifest.add("at_end", at_end);
  manifest.add("last_at_end", last_at_end);
  manifest.add("unreadable", unreadable);
  manifest.add("last_unreadable", last_unreadable);
  manifest.add("lines", lines);
  manifest.add("sentences", sentences);
  manifest.add("words", words);
  manifest.add("lemmas", lemmas);
  manifest.add("tags", tags);
  manifest.add("warnings", warnings);
  manifest.add({"failure", failure});
  manifest.add("overflow", overflow);
}

std::string scan_name(std::size_t shard) {
  return fmt::format("scan-{}", shard);
}

ScanResult scan(const WorkFolder& folder, const Plan& plan, std::size_t shard, std::optional<std::uint64_t> begin) {
  return Scanner(folder, plan, shard).run(begin);
}

}  // namespace colx::scale
