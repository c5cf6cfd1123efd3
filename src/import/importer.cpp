#include "import/importer.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>

#include "companion/descriptor.h"
#include "companion/errors.h"
#include "import/datafile_writer.h"
#include "import/import_options.h"
#include "import/import_report.h"
#include "import/lemma_protection.h"
#include "import/relations.h"
#include "import/sentence_reader.h"
#include "import/treebank_format.h"
#include "import/treebank_source.h"

namespace colx {

namespace {

void _say(const std::string& text) {
  std::fputs(text.c_str(), stderr);
}

// A bar on standard error, redrawn in place, over the bytes of all inputs whose size is known.
class ReadingBar {
 public:
  ReadingBar(const std::vector<std::string>& inputs, bool wanted) : _shown(wanted && isatty(STDERR_FILENO) == 1) {
    for (const std::string& input : inputs) {
      struct stat status {};
      if (input == "-" || stat(input.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) continue;
      _total += static_cast<std::uint64_t>(status.st_size);
    }
    _shown = _shown && _total > 0;
  }

  void update(std::uint64_t bytes_of_this_input) {
    if (!_shown) return;
    const std::uint64_t percent = std::min<std::uint64_t>(100, (_before + bytes_of_this_input) * 100 / _total);
    if (percent == _percent) return;
    _percent = percent;
    _drawn = true;
    _say(fmt::format("\r[{:<50}] {:3}%", std::string(percent / 2, '#'), percent));
  }

  // Counts an input as done.
  void finish_input(std::uint64_t bytes) { _before += bytes; }

  // Clears the line, so that a message can be shown.
  void clear() {
    if (!_drawn) return;
    _say("\r\x1B[K");
    _drawn = false;
    _percent = 101;
  }

 private:
  bool _shown;
  bool _drawn = false;
  std::uint64_t _total = 0;
  std::uint64_t _before = 0;
  std::uint64_t _percent = 101;
};

// Whether writing to a path would overwrite an input.
bool _is_same_file(const std::string& output, const std::string& input) {
  struct stat to {};
  struct stat from {};
  const int found = input == "-" ? fstat(STDIN_FILENO, &from) : stat(input.c_str(), &from);
  return found == 0 && stat(output.c_str(), &to) == 0 && S_ISREG(to.st_mode) && to.st_dev == from.st_dev &&
         to.st_ino == from.st_ino;
}

class Importer {
 public:
  explicit Importer(const ImportSettings& settings)
      : _settings(settings), _report(settings.mask), _bar(settings.inputs, !settings.quiet) {}

  // Returns the exit status. Throws input_error and output_error.
  int run() {
    _find_inputs();
    if (!_settings.check) _writer = std::make_unique<DatafileWriter>(_settings.output, _settings.split);
    for (std::size_t i = 0; i < _inputs.size(); ++i)
      _import(_settings.inputs[i], _inputs[i]);
    _bar.clear();
    if (_writer) _writer->finish();
    if (!_settings.list.empty()) extend_list(_settings.list, _writer->paths());
    if (!_settings.quiet) _say(_report.text());
    const bool wrong = _report.skipped() > 0 || (_settings.check && (_problems > 0 || _report.too_many_tags()));
    return _settings.strict && wrong ? 1 : 0;
  }

  void clear_bar() { _bar.clear(); }

 private:
  // Whether all inputs have to be looked at before the first is imported.
  bool _two_passes() const {
    return _settings.tag == TagSource::automatic && _settings.format != TreebankFormat::datafile;
  }

  // Makes sure that all inputs can be opened, that none of them will be overwritten and, where the tags decide it,
  // finds out which tags to take. An input that cannot be read twice stays open.
  void _find_inputs() {
    _tag = _settings.tag;
    EqualLengths lengths;
    for (const std::string& path : _settings.inputs) {
      _refuse_overwriting(path);
      std::unique_ptr<TreebankSource> source;
      if (_two_passes()) {
        source = std::make_unique<TreebankSource>(path, true);
        _look_at_tags(*source, lengths);
        source->rewind();
      }
      struct stat status {};
      const bool regular = path != "-" && stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
      if (path != "-" && access(path.c_str(), R_OK) != 0) {
        throw input_error(fmt::format("cannot open {} for reading: {}", path, system_reason()));
      }
      if (path != "-" && S_ISDIR(status.st_mode))
        throw input_error(fmt::format("cannot read {}: it is a directory", path));
      if (regular) source.reset();
      _inputs.push_back(std::move(source));
    }
    if (_tag == TagSource::automatic) _tag = lengths.positional() ? TagSource::xpos : TagSource::feats;
  }

  void _refuse_overwriting(const std::string& input) const {
    const auto refuse = [&](const std::string& output) {
      if (!output.empty() && _is_same_file(output, input)) {
        throw output_error(output + ": is an input and would be overwritten");
      }
    };
    refuse(_settings.list);
    refuse(_settings.split == 0 ? _settings.output : numbered_path(_settings.output, 1));
  }

  TreebankFormat _format_of(TreebankSource& source) const {
    const auto format = _settings.format ? _settings.format : recognise_format(source.preview());
    if (!format) {
      throw input_error(source.name() +
                        ": expected rows of 10 columns separated by TAB (CoNLL-U, CoNLL-X) or of 6 fields (datafile), "
                        "found neither; --from FORMAT tells which it is");
    }
    return *format;
  }

  void _look_at_tags(TreebankSource& source, EqualLengths& lengths) {
    const TreebankFormat format = _format_of(source);
    if (format == TreebankFormat::datafile) return;
    SentenceReader reader(source, format);
    TreebankSentence sentence;
    std::vector<TreebankProblem> problems;
    while (reader.next(sentence, problems)) {
      if (must_be_skipped(problems)) continue;
      for (const TreebankWord& word : sentence.words)
        lengths.add(word.xpos);
    }
  }

  void _import(const std::string& path, std::unique_ptr<TreebankSource>& opened) {
    const auto source = opened ? std::move(opened) : std::make_unique<TreebankSource>(path, false);
    const TreebankFormat format = _format_of(*source);
    SentenceReader reader(*source, format);
    TreebankSentence sentence;
    std::vector<TreebankProblem> problems;
    while (reader.next(sentence, problems)) {
      _bar.update(source->bytes_read());
      if (!must_be_skipped(problems)) _convert(sentence, format, source->name(), problems);
      _tell(problems, source->name());
      if (must_be_skipped(problems)) _report.add_skipped();
    }
    _report.add_passed(reader.passed());
    _bar.finish_input(source->bytes_read());
  }

  std::string _lemma(const TreebankWord& word, TreebankFormat format) const {
    const bool unspecified = word.lemma.empty() || (word.lemma == "_" && format != TreebankFormat::datafile);
    const std::string lemma = datafile_field(unspecified ? word.form : word.lemma);
    return _settings.protect_lemmas.value_or(format == TreebankFormat::conllu) ? protect_lemma(lemma) : lemma;
  }

  std::string _tag_of(const TreebankWord& word, TreebankFormat format) const {
    if (format == TreebankFormat::datafile || _tag == TagSource::xpos) return datafile_field(word.xpos);
    return datafile_field(_tag == TagSource::upos ? word.upos : positional_tag(word.upos, word.feats));
  }

  // Writes and counts a sentence, unless it turns out that it cannot be written.
  void _convert(const TreebankSentence& sentence, TreebankFormat format, const std::string& input,
                std::vector<TreebankProblem>& problems) {
    const bool datafile = format == TreebankFormat::datafile;
    std::vector<std::pair<std::string, std::string>> texts;  // lemma and tag of each word
    for (const TreebankWord& word : sentence.words) {
      texts.emplace_back(_lemma(word, format), _tag_of(word, format));
      const auto limit = [&](const std::string& text, unsigned column, const char* name) {
        if (text.size() <= longest_treebank_text) return;
        problems.push_back({word.line, column, name,
                            fmt::format("expected at most {} bytes, found {}", longest_treebank_text, text.size()),
                            false});
      };
      limit(texts.back().first, 3, datafile ? "lemma" : "LEMMA");
      limit(texts.back().second, datafile ? 4 : 5, datafile ? "tag" : "XPOS");
    }
    if (must_be_skipped(problems)) return;

    const std::vector<std::string> functions =
        _settings.functions ? analytical_functions(sentence) : std::vector<std::string>();
    std::string text;
    for (std::size_t i = 0; i < sentence.words.size(); ++i) {
      const TreebankWord& word = sentence.words[i];
      const std::string relation = _settings.functions ? functions[i] : datafile_field(word.relation);
      if (word.relation != "Undef" && (relation == "Undef" || !is_analytical_function(relation))) {
        _report.add_undefined(word.relation);
      }
      const auto& [lemma, tag] = texts[i];
      _report.add_word(lemma, tag, {input, word.line});
      fmt::format_to(std::back_inserter(text), "{}\t{}\t{}\t{}\t{}\t{}\n", i + 1, datafile_field(word.form), lemma, tag,
                     word.parent, relation);
    }
    _report.add_sentence(sentence, input);
    if (_writer) _writer->write(text, sentence.words.size());
  }

  void _tell(const std::vector<TreebankProblem>& problems, const std::string& input) {
    if (!problems.empty()) _bar.clear();
    const bool skipped = must_be_skipped(problems);
    for (const TreebankProblem& problem : problems) {
      ++_problems;
      const std::string column =
          problem.column == 0 ? "" : fmt::format("column {} ({}): ", problem.column, problem.column_name);
      _say(fmt::format("ngrex-import: {}:{}: {}{}; {}\n", input, problem.line, column, problem.text,
                       skipped ? "the sentence is skipped" : "read as if it were right"));
    }
  }

  const ImportSettings& _settings;
  TagSource _tag = TagSource::automatic;
  std::vector<std::unique_ptr<TreebankSource>> _inputs;  // null: to be opened when its turn comes
  std::unique_ptr<DatafileWriter> _writer;
  ImportReport _report;
  ReadingBar _bar;
  std::uint64_t _problems = 0;
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
  } catch (const std::runtime_error& error) {
    importer.clear_bar();
    throw std::runtime_error(fmt::format("{}; stopping", error.what()));
  }
}

}  // namespace colx
