#include "import/importer.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <numeric>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "companion/descriptor.h"
#include "companion/errors.h"
#include "import/datafile_words.h"
#include "import/datafile_writer.h"
#include "import/extended_list.h"
#include "import/fault_teller.h"
#include "import/foreign_format.h"
#include "import/import_options.h"
#include "import/import_report.h"
#include "import/noted_sentences.h"
#include "import/reading_bar.h"
#include "import/relation_tables.h"
#include "import/sentence_reader.h"
#include "import/treebank_format.h"
#include "import/treebank_source.h"
#include "import/xpos_lengths.h"

namespace colx {

namespace {

std::size_t _total_size(const std::vector<std::string>& inputs) {
  return std::accumulate(inputs.begin(), inputs.end(), std::size_t{0}, [](std::size_t sum, const std::string& input) {
    const auto file = regular_input(input);
    return sum + (file ? file->size : 0);
  });
}

class Importer {
 public:
  explicit Importer(const ImportSettings& settings)
      : _settings(settings),
        _report(settings.mask),
        _bar(_total_size(settings.inputs) * (_two_passes() ? 2 : 1), !settings.quiet && !_prints_to_terminal()),
        _faults(_bar, settings.check) {}

  // Returns the exit status. Throws input_error and output_error.
  int run() {
    if (!_settings.relation_map.empty()) _read_relation_map();
    _open_inputs();
    if (!_settings.check) _open_outputs();
    for (std::size_t i = 0; i < _inputs.size(); ++i)
      _import(_settings.inputs[i], _inputs[i]);
    _bar.clear();
    if (_writer) _writer->finish();
    if (_sentences) _sentences->commit();
    if (_list) _list->add(_writer->paths());
    if (_writer && !_settings.output.empty()) _warn_of_others();
    const std::string tag_fault = _report.tag_fault();
    if (!_settings.quiet)
      say(_report.text() + _faults.counts().text());
    else if (_settings.check && !tag_fault.empty())
      say(fmt::format("ngrex-import: {}\n", tag_fault));
    // The report of a check is its result.
    if (_settings.check && std::ferror(stderr) != 0) throw output_error("cannot write to standard error");
    const bool wrong = _report.skipped() > 0 || (_settings.check && (_faults.told() > 0 || !tag_fault.empty()));
    return _settings.strict && wrong ? 1 : 0;
  }

 private:
  // Whether all inputs have to be looked at before the first is imported.
  bool _two_passes() const {
    return _settings.tag == TagSource::automatic && _settings.format != TreebankFormat::datafile;
  }

  bool _prints_to_terminal() const {
    return !_settings.check && _settings.output.empty() && ::isatty(STDOUT_FILENO) == 1;
  }

  // Makes sure that all inputs can be opened and, where the tags decide it, finds out which tags to take. An input that
  // cannot be read twice stays open.
  void _open_inputs() {
    _tag = _settings.tag;
    XposLengths lengths;
    for (const std::string& path : _settings.inputs) {
      auto source = std::make_unique<TreebankSource>(path, _two_passes());
      _any_treebank = _format_of(*source) != TreebankFormat::datafile || _any_treebank;
      if (_two_passes()) {
        _look_at_tags(*source, lengths);
        source->rewind();
      } else {
        _format_of(*source);  // before any output is touched
      }
      if (path != "-" && regular_file(path).has_value()) source.reset();
      if (const auto file = regular_input(path)) _kept.push_back(file->identity);
      _inputs.push_back(std::move(source));
    }
    if (_tag != TagSource::automatic) return;
    _tag_length = lengths.positional_length();
    _tag = _tag_length > 0 ? TagSource::xpos : TagSource::feats;
    if (!_any_treebank || _tag_length > 0) return;
    _refusal = lengths.refusal();
    _report.add_refusal(_refusal);
  }

  void _look_at_tags(TreebankSource& source, XposLengths& lengths) {
    const TreebankFormat format = _format_of(source);
    SentenceReader reader(source, format, WantedFields::xpos);
    TreebankSentence sentence;
    std::vector<TreebankProblem> problems;
    while (format != TreebankFormat::datafile && !lengths.decided() && reader.next(sentence, problems)) {
      _bar.update(source.bytes_read());
      if (must_be_skipped(problems)) continue;
      for (const TreebankWord& word : sentence.words)
        lengths.add(word.xpos, source.name(), word.line);
    }
    const auto file = regular_input(source.path());
    _bar.finish_input(file ? file->size : 0);
  }

  // Opens what is written; no output may be an input, nor a datafile the list.
  void _open_outputs() {
    if (!_settings.list.empty()) {
      _list.emplace(_settings.list, _kept);
      if (_any_treebank) _open_record();
      if (_list->has_carriage_returns())
        _faults.complain(
            fmt::format("{}: expected lines that end with LF, found CR LF, of which ngrex takes the CR for a part of "
                        "the path",
                        _settings.list));
    }
    if (!_settings.sentences.empty())
      _sentences.emplace(_settings.sentences, _settings.output, _settings.split != 0, _kept);
    _writer = std::make_unique<DatafileWriter>(_settings.output, _settings.split, _kept);
  }

  // Makes sure that a list is extended with datafiles that are made as the others were, or knowingly with different
  // ones.
  void _open_record() {
    for (std::string& note : _list->open_record({_settings.output, _settings.split},
                                                {_tag_name(), _settings.tag != TagSource::automatic, _refusal},
                                                {_relations_name(), _settings.functions.has_value(), ""}, _kept))
      _report.add_list_note(std::move(note));
  }

  // As --tag and --relations have it.
  std::string _tag_name() const {
    return _tag == TagSource::xpos ? "xpos" : _tag == TagSource::upos ? "upos" : "feats";
  }
  std::string _relations_name() const { return _settings.functions.value_or(true) ? "functions" : "keep"; }

  void _read_relation_map() {
    const std::string& path = _settings.relation_map;
    const Descriptor file = open_for_reading(path);
    std::string text;
    std::array<char, 4096> buffer;
    while (const std::size_t size = file.read_some(buffer.data(), buffer.size(), path))
      text.append(buffer.data(), size);
    _relation_map.emplace(text, path);
    if (const auto regular = regular_file(path)) _kept.push_back(regular->identity);
  }

  TreebankFormat _format_of(TreebankSource& source) const {
    const std::string_view beginning = source.preview();
    if (const auto foreign = foreign_bytes(beginning)) _refuse(source, *foreign);
    if (_settings.format) return *_settings.format;
    if (const auto foreign = foreign_rows(beginning)) _refuse(source, *foreign, from_tells);
    const auto format = recognise_format(beginning);
    if (!format) _refuse(source, guess_of_unrecognised(beginning), from_tells);
    return *format;
  }

  static constexpr std::string_view from_tells = ", or --from FORMAT tells which format it is all the same";

  [[noreturn]] static void _refuse(const TreebankSource& source, const ForeignFormat& foreign,
                                   std::string_view way_out = "") {
    throw input_error(
        fmt::format("{}: expected rows of 10 columns separated by TAB (CoNLL-U, CoNLL-X) or of 6 fields (datafile), "
                    "found {}; {}{}",
                    source.name(), foreign.found, foreign.advice, way_out));
  }

  const RelationMap& _map_for(TreebankFormat format, TreebankSource& source) const {
    if (_relation_map) return *_relation_map;
    return map_of(format == TreebankFormat::conllu ? recognise_relations(source.preview()) : universal_relations());
  }

  Conversion _conversion(TreebankSource& source) const {
    const TreebankFormat format = _format_of(source);
    const bool is_datafile = format == TreebankFormat::datafile;
    Conversion conversion;
    conversion.format = format;
    conversion.tag = _tag;
    conversion.tag_length = _tag_length;
    // A datafile that is checked will be read as it is.
    if (_settings.functions.value_or(!(is_datafile && _settings.check) || _relation_map))
      conversion.relations = &_map_for(format, source);
    conversion.protect_lemmas = _settings.protect_lemmas.value_or(format == TreebankFormat::conllu);
    // Forms have no technical suffixes that should be cut.
    conversion.protect_forms = _settings.protect_lemmas.value_or(!is_datafile);
    return conversion;
  }

  void _import(const std::string& path, std::unique_ptr<TreebankSource>& opened) {
    const auto source = opened ? std::move(opened) : std::make_unique<TreebankSource>(path, false);
    const Conversion conversion = _conversion(*source);
    _report.add_input(conversion);
    SentenceReader reader(*source, conversion.format);
    SentenceConverter converter(conversion);
    TreebankSentence sentence;
    std::vector<TreebankProblem> problems;
    std::uint64_t sentences = 0;
    _faults.begin_input(source->name(), conversion.format);
    while (reader.next(sentence, problems)) {
      _bar.update(source->bytes_read());
      if (sentence.rows > 0) ++sentences;
      if (sentence.rows > 0 && !must_be_skipped(problems)) _convert(sentence, converter, *source, problems);
      _faults.tell(problems);
      if (must_be_skipped(problems)) _report.add_skipped(sentence.rows);
    }
    if (sentences == 0) _faults.complain(fmt::format("{}: expected sentences, found none", source->name()));
    _faults.end_input();
    // They were told as one fault.
    if (reader.carriage_returns() > 1) _faults.count(Fault::carriage_return, reader.carriage_returns() - 1);
    _report.add_passed(reader.passed());
    _bar.finish_input(source->bytes_read());
  }

  // Writes and counts a sentence, unless it turns out that it cannot be written.
  void _convert(const TreebankSentence& sentence, SentenceConverter& converter, const TreebankSource& input,
                std::vector<TreebankProblem>& problems) {
    const std::vector<DatafileWord>& words = converter.convert(sentence, problems);
    if (must_be_skipped(problems)) return;
    _report.add_sentence(sentence, words, input.name());
    if (!_writer) return;
    _text.clear();
    append_rows(_text, sentence, words);
    const std::uint64_t line = _writer->write(_text, words.size());
    if (_sentences) _sentences->add(sentence, input.path(), _writer->paths(), line);
  }

  // Tells of files that another import of the same output left, as a list may name them too: parts with higher numbers,
  // and a whole file beside parts or parts beside a whole file.
  void _warn_of_others() const {
    const bool is_split = _settings.split != 0;
    const std::string next = numbered_path(_settings.output, is_split ? _writer->paths().size() + 1 : 1);
    _warn_of_other(next, is_split);
    if (is_split) _warn_of_other(_settings.output, false);
  }

  void _warn_of_other(const std::string& path, bool also_unlisted) const {
    const auto file = regular_file(path);
    if (!file || std::find(_kept.begin(), _kept.end(), file->identity) != _kept.end()) return;
    const bool is_listed = _list && _list->names(path);
    if (is_listed)
      say(fmt::format("ngrex-import: {} is in the list {} but not of this import; ngrex will count its words as well\n",
                      path, _settings.list));
    else if (also_unlisted)
      say(fmt::format("ngrex-import: {} is there already and not of this import\n", path));
  }

  const ImportSettings& _settings;
  TagSource _tag = TagSource::automatic;
  std::vector<std::unique_ptr<TreebankSource>> _inputs;  // null: to be opened when its turn comes
  std::vector<FileIdentity> _kept;                       // what no datafile may overwrite
  std::optional<RelationMap> _relation_map;
  std::size_t _tag_length = 0;  // of tags from XPOS; 0: any
  std::string _refusal;         // why tags are not taken from XPOS; empty: they are, or were not looked at
  bool _any_treebank = false;   // some input is no datafile
  std::optional<ExtendedList> _list;
  std::optional<NotedSentences> _sentences;
  std::unique_ptr<DatafileWriter> _writer;
  ImportReport _report;
  ReadingBar _bar;
  std::string _text;  // of the sentence in hand
  FaultTeller _faults;
};

}  // namespace

int run_import(const std::vector<std::string>& arguments) {
  const ImportSettings settings = parse_import_options(arguments);
  if (!settings.information.empty()) {
    write_to_standard_output(settings.information);
    return 0;
  }
  Importer importer(settings);
  try {
    return importer.run();
  } catch (const input_error& error) {
    throw input_error(fmt::format("{}; stopping", error.what()));
  } catch (const output_error& error) {
    throw output_error(fmt::format("{}; stopping", error.what()));
  }
}

}  // namespace colx
