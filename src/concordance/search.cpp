#include "concordance/search.h"

#include <algorithm>
#include <deque>
#include <fstream>
#include <limits>
#include <memory>
#include <numeric>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "base/config.h"
#include "base/errors.h"
#include "base/files.h"
#include "companion/errors.h"
#include "concordance/datafile_sentences.h"
#include "concordance/hit_choice.h"
#include "concordance/occurrence_finder.h"
#include "concordance/wanted_trees.h"
#include "corpus/datafile_format.h"
#include "corpus/parser.h"
#include "corpus/word_forms.h"
#include "corpus/word_queue.h"
#include "filter/filter.h"
#include "util/hashing.h"

namespace colx::concordance {

namespace {

// The place of each datafile among all paths in their order.
std::vector<std::uint32_t> _ranks(const std::vector<ListedDatafile>& datafiles) {
  std::vector<std::uint32_t> order(datafiles.size());
  std::iota(order.begin(), order.end(), 0U);
  const auto before = [&](std::uint32_t a, std::uint32_t b) { return datafiles[a].path < datafiles[b].path; };
  std::sort(order.begin(), order.end(), before);
  std::vector<std::uint32_t> ranks(datafiles.size());
  for (std::uint32_t i = 1; i < order.size(); ++i)
    ranks[order[i]] = ranks[order[i - 1]] + (before(order[i - 1], order[i]) ? 1 : 0);
  return ranks;
}

std::uint64_t _hash_text(std::string_view text) {
  return hash_bytes(text.data(), text.size());
}

// By what a reader sees of a sentence.
std::uint64_t _hash_forms(const WordForms& forms, std::size_t first, std::size_t count) {
  std::uint64_t hash = hash_keys[6];
  for (std::size_t i = first; i < first + count; ++i)
    hash = mix(hash ^ _hash_text(forms[i]), hash_keys[7]);
  return hash;
}

// Sets the mask by which the parser goes, as long as it lives.
class MaskSetting {
 public:
  explicit MaskSetting(const std::string& mask) : _before(settings::morphologic_tag_mask) {
    settings::morphologic_tag_mask = mask.c_str();
  }
  ~MaskSetting() { settings::morphologic_tag_mask = _before; }

  MaskSetting(const MaskSetting&) = delete;
  MaskSetting& operator=(const MaskSetting&) = delete;

 private:
  const char* _before;
};

}  // namespace

class Search::Work {
 public:
  Work(const CorpusSettings& settings, const std::vector<ListedDatafile>& datafiles, unsigned n)
      : _settings(settings), _datafiles(datafiles), _wanted(n, _rules), _finder(_wanted, n), _sentences(datafiles) {
    if (settings.rules.empty() || settings.mask.empty()) return;
    try {
      if (!_rules.read_rules(settings.rules.c_str(), n))
        throw input_error(fmt::format("cannot open {} for reading", settings.rules));
    } catch (const fatal_error&) {
      throw input_error(fmt::format("cannot read {} to its end", settings.rules));
    }
  }

  void add(const table::Block& block) {
    _wanted.add(block);
    const bool is_possible = _wanted.is_possible(_terms.size());
    _terms.push_back(
        {_hash_text(block.text.substr(0, block.members_size)), is_possible ? block.cells[block.cell_count() - 1] : 0});
  }

  void add(const Query& query) {
    _wanted.add(query);
    _terms.push_back({_hash_text(query.text), std::numeric_limits<std::uint64_t>::max()});
  }

  void run(const ExampleSettings& wanted, std::size_t memory, const WarningSink& warn) {
    if (!wanted.sentences.empty()) _sentences.take_origins(wanted.sentences);
    _wanted.close();
    _found.assign(_terms.size(), 0);
    _choice = make_choice(wanted, std::move(_terms), _ranks(_datafiles), memory);
    const MaskSetting mask(_settings.mask);
    _is_complete = true;
    for (std::uint32_t i = 0; i < _datafiles.size() && _is_complete; ++i)
      _is_complete = _search(i, warn);
    _choice->finish();
  }

  std::uint64_t found(std::size_t ngram) const { return _found[ngram]; }
  bool is_complete() const { return _is_complete; }
  bool next(Hit& hit) { return _choice->next(hit); }
  const ExampleSentence& sentence(const Place& place) { return _sentences.at(place); }

 private:
  // A sentence that was read: its words, the hash of its forms when it has hits, and these.
  struct SentenceAhead {
    std::uint32_t words;
    std::uint64_t hash;
    std::vector<Hit> hits;
  };

  // Returns false when no more of the corpus needs to be read.
  bool _search(std::uint32_t datafile, const WarningSink& warn) {
    const std::string& path = _datafiles[datafile].path;
    std::ifstream stream = open_input(path);
    if (!stream.is_open()) throw input_error(fmt::format("cannot open {} for reading", path));
    try {
      if (!_search(stream, datafile, [&](std::string_view warning) { warn(fmt::format("{}: {}", path, warning)); }))
        return false;
    } catch (const index_overflow&) {
      throw input_error(fmt::format("{}: the corpus has more than {} different tags under the mask {}", path,
                                    most_distinct_tags, _settings.mask));
    } catch (const string_too_long& error) {
      throw input_error(fmt::format("{}: {}", path, error.what()));
    }
    if (stream.fail()) throw input_error(fmt::format("cannot read {} to its end", path));
    return true;
  }

  // ngrex reads as far ahead as its context window goes, and counts no further sentence when it has counted one after
  // it came to the end of the datafile.
  bool _search(std::istream& stream, std::uint32_t datafile, const WarningSink& warn) {
    // On the heap because of its caches.
    const auto parser = std::make_unique<Parser>(stream, _wanted.lemmas(), _wanted.tags(), warn, &_forms);
    const auto [mode, radius] = _settings.window;
    _ahead.clear();
    _words_ahead = 0;
    _read(*parser, datafile, 1, ContextWindow::sentences);
    if (radius != 0) _read(*parser, datafile, radius, mode);
    while (!_ahead.empty()) {
      _count(_ahead.front());
      if (_choice->is_full()) return false;
      if (parser->at_end()) return true;
      if (mode == ContextWindow::sentences) {
        _read(*parser, datafile, 1, mode);
      } else if (_ahead.size() > 1) {
        const std::uint64_t beyond = _words_ahead - _ahead[0].words - _ahead[1].words;
        if (beyond < radius) _read(*parser, datafile, radius - static_cast<std::uint32_t>(beyond), mode);
      }
      _words_ahead -= _ahead.front().words;
      _ahead.pop_front();
    }
    return true;
  }

  // Reads sentences, as many as Parser::next does, and looks for hits in them.
  void _read(Parser& parser, std::uint32_t datafile, std::uint32_t limit, ContextWindow::Mode mode) {
    _words.drop_front(_words.size());
    _forms.clear();
    if (!parser.next(limit, mode, _words)) return;
    std::size_t first = 0;
    for (const SentenceExtent& extent : parser.sentences()) {
      _ahead.push_back({extent.length, 0, {}});
      _words_ahead += extent.length;
      _search({datafile, extent.line, extent.length, extent.begin, extent.end}, first, _ahead.back());
      first += extent.length;
    }
  }

  // Looks for hits in the sentence whose words begin at `first`.
  void _search(const Place& place, std::size_t first, SentenceAhead& sentence) {
    const WordIterator begin = _words.begin() + first;
    Hit hit;
    hit.place = place;
    _finder.for_each({begin, begin + place.words}, [&](std::size_t ngram, std::span<const Position> positions) {
      if (sentence.hits.empty()) sentence.hash = _hash_forms(_forms, first, place.words);
      hit.ngram = ngram;
      std::copy(positions.begin(), positions.end(), hit.positions.begin());
      sentence.hits.push_back(hit);
    });
  }

  void _count(const SentenceAhead& sentence) {
    for (const Hit& hit : sentence.hits) {
      ++_found[hit.ngram];
      _choice->add(hit, sentence.hash);
    }
  }

  const CorpusSettings& _settings;
  const std::vector<ListedDatafile>& _datafiles;
  MultiRulesFilter _rules;
  WantedTrees _wanted;
  OccurrenceFinder _finder;
  DatafileSentences _sentences;
  std::vector<ChoiceTerms> _terms;    // by N-gram, until the search begins
  std::vector<std::uint64_t> _found;  // by N-gram
  std::unique_ptr<HitChoice> _choice;
  bool _is_complete = false;
  WordQueue _words;  // of the sentences in hand
  WordForms _forms;
  std::deque<SentenceAhead> _ahead;  // the sentence in hand and those that have been read ahead
  std::uint64_t _words_ahead = 0;    // of all of these
};

Search::Search(const CorpusSettings& settings, const std::vector<ListedDatafile>& datafiles, unsigned n)
    : _work(std::make_unique<Work>(settings, datafiles, n)) {}

Search::~Search() = default;

void Search::add(const table::Block& block) {
  _work->add(block);
}

void Search::add(const Query& query) {
  _work->add(query);
}

void Search::run(const ExampleSettings& wanted, std::size_t memory, const WarningSink& warn) {
  _work->run(wanted, memory, warn);
}

std::uint64_t Search::found(std::size_t ngram) const {
  return _work->found(ngram);
}

bool Search::is_complete() const {
  return _work->is_complete();
}

bool Search::next(Hit& hit) {
  return _work->next(hit);
}

const ExampleSentence& Search::sentence(const Place& place) {
  return _work->sentence(place);
}

}  // namespace colx::concordance
