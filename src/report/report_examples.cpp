#include "report/report_examples.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include <fmt/format.h>

#include "companion/utf8.h"
#include "util/hashing.h"

namespace colx::report {

namespace {

std::uint64_t _hash_of(const concordance::Place& place) {
  return mix(place.begin ^ std::uint64_t{place.datafile} << 40, hash_keys[0]);
}

}  // namespace

ReportExamples::ReportExamples(const concordance::CorpusSettings& corpus, const concordance::ExampleSettings& wanted,
                               const std::vector<ListedDatafile>& datafiles, std::size_t n)
    : _search(corpus, datafiles, static_cast<unsigned>(n)), _wanted(wanted), _n(n), _hit_words(n) {
  _texts.number("");
}

void ReportExamples::add(const table::Block& block) {
  _search.add(block);
  _frequencies.push_back(block.cells[block.cell_count() - 1]);
}

void ReportExamples::find(std::size_t memory, const WarningSink& warn) {
  _search.run(_wanted, memory, warn);
  _hit_ends.assign(rows(), 0);
  for (concordance::Hit hit; _search.next(hit);) {
    _hit_sentences.push_back(_number_of(hit.place));
    for (std::size_t k = 0; k < _n; ++k)
      _hit_words[k].push_back(hit.positions[k]);
    ++_hit_ends[hit.ngram];
  }
  std::partial_sum(_hit_ends.begin(), _hit_ends.end(), _hit_ends.begin());
  for (std::size_t row = 0; row < rows(); ++row)
    if (_search.found(row) != _frequencies[row]) ++_differing;
  _put_in_order();
  for (const concordance::Place& place : _places)
    _keep(_search.sentence(place));
}

// The number of a sentence, by first sight.
std::uint32_t ReportExamples::_number_of(const concordance::Place& place) {
  const std::uint64_t hash = _hash_of(place);
  const std::uint32_t known = _known.find(hash, [&](std::uint32_t number) { return _places[number] == place; });
  if (known != CompactIndex::none) return known;
  _known.insert(hash, [&](std::uint32_t number) { return _hash_of(_places[number]); });
  _places.push_back(place);
  return static_cast<std::uint32_t>(_places.size() - 1);
}

// Numbers the sentences in the order of the corpus, in which they are read once from front to back.
void ReportExamples::_put_in_order() {
  Numbers32 order(_places.size());
  std::iota(order.begin(), order.end(), 0U);
  std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
    return std::pair(_places[a].datafile, _places[a].begin) < std::pair(_places[b].datafile, _places[b].begin);
  });
  Numbers32 numbers(_places.size());
  std::vector<concordance::Place> places;
  for (const std::uint32_t number : order) {
    numbers[number] = static_cast<std::uint32_t>(places.size());
    places.push_back(_places[number]);
  }
  for (std::uint32_t& sentence : _hit_sentences)
    sentence = numbers[sentence];
  _places = std::move(places);
  _known.clear();
}

std::uint32_t ReportExamples::_text(std::string_view text) {
  return is_utf8(text) ? _texts.number(text) : _texts.number(as_utf8(text));
}

void ReportExamples::_keep(const concordance::ExampleSentence& sentence) {
  for (const concordance::ExampleWord& word : sentence.words) {
    _words.forms.push_back(_text(word.form));
    _words.lemmas.push_back(_text(word.lemma));
    _words.tags.push_back(_text(word.tag));
    _words.relations.push_back(_text(word.relation));
    _words.parents.push_back(word.parent);
  }
  const concordance::SentenceOrigin origin = sentence.origin.value_or(concordance::SentenceOrigin());
  _are_cited = _are_cited || sentence.origin.has_value();
  _sentences.files.push_back(_text(sentence.entry));
  _sentences.lines.push_back(sentence.line);
  _sentences.ids.push_back(_text(origin.id));
  _sentences.texts.push_back(_text(origin.text));
  _sentences.sources.push_back(_text(origin.source));
  _sentences.source_lines.push_back(static_cast<std::uint32_t>(origin.line));
  _sentences.ends.push_back(static_cast<std::uint32_t>(_words.forms.size()));
}

// Numbers the texts of which there are few kinds first, so that their numbers are small and take 16 bits.
void ReportExamples::_number_texts_anew() {
  constexpr std::uint32_t unused = 0xFFFFFFFF;
  Numbers32 numbers(_texts.size(), unused);
  table::TextStore texts;
  numbers[0] = texts.number("");
  for (Numbers32* const column : {&_words.tags, &_words.relations, &_sentences.files, &_sentences.sources,
                                  &_words.lemmas, &_words.forms, &_sentences.ids, &_sentences.texts})
    for (std::uint32_t& text : *column) {
      if (numbers[text] == unused) numbers[text] = texts.number(_texts[text]);
      text = numbers[text];
    }
  _texts = std::move(texts);
}

std::vector<Column> ReportExamples::take_columns() {
  _number_texts_anew();
  std::vector<Column> columns;
  append_texts(_texts, "texts", columns);
  columns.push_back({"sentence.file", std::move(_sentences.files)});
  columns.push_back({"sentence.line", std::move(_sentences.lines)});
  columns.push_back({"sentence.id", std::move(_sentences.ids)});
  columns.push_back({"sentence.text", std::move(_sentences.texts)});
  columns.push_back({"sentence.source", std::move(_sentences.sources)});
  columns.push_back({"sentence.sourceLine", std::move(_sentences.source_lines)});
  columns.push_back({"sentence.words", std::move(_sentences.ends)});
  columns.push_back({"word.form", narrowed(std::exchange(_words.forms, {}))});
  columns.push_back({"word.lemma", narrowed(std::exchange(_words.lemmas, {}))});
  columns.push_back({"word.tag", narrowed(std::exchange(_words.tags, {}))});
  columns.push_back({"word.relation", narrowed(std::exchange(_words.relations, {}))});
  columns.push_back({"word.parent", std::move(_words.parents)});
  columns.push_back({"hits.ends", std::move(_hit_ends)});
  columns.push_back({"hit.sentence", std::move(_hit_sentences)});
  for (std::size_t k = 0; k < _n; ++k)
    columns.push_back({fmt::format("hit.word{}", k + 1), std::move(_hit_words[k])});
  return columns;
}

}  // namespace colx::report
