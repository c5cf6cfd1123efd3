#include "import/import_report.h"

#include <algorithm>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "base/config.h"
#include "companion/utf8.h"
#include "corpus/datafile_format.h"
#include "import/mask_search.h"
#include "import/tree_check.h"

namespace colx {

namespace {

std::string _place(const TreebankPlace& place) {
  return fmt::format("{}:{}", place.input, place.line);
}

std::string _line(std::string_view name, std::string_view value) {
  return fmt::format("{:<24}{}\n", name.empty() ? "" : fmt::format("{}:", name), value);
}

std::string _line(std::string_view name, std::uint64_t count) {
  return _line(name, std::to_string(count));
}

std::string _words_unless_zero(std::string_view name, std::uint64_t count) {
  return count == 0 ? "" : _line(name, fmt::format("{} words", count));
}

// A line that goes on with what the one before says.
std::string _continued(std::string_view text) {
  return _line("", text);
}

std::string_view _name(TreebankFormat format) {
  switch (format) {
    case TreebankFormat::conllu:
      return "CoNLL-U";
    case TreebankFormat::conllx:
      return "CoNLL-X";
    case TreebankFormat::datafile:
      break;
  }
  return "datafile";
}

std::string_view _tag_source(const Conversion& conversion) {
  if (conversion.format == TreebankFormat::datafile) return "as they are";
  switch (conversion.tag) {
    case TagSource::upos:
      return "from UPOS";
    case TagSource::feats:
      return "made from UPOS and FEATS";
    case TagSource::xpos:
    case TagSource::automatic:
      break;
  }
  return "from XPOS";
}

// Names and how often each was seen, most frequent first; a line each, but for those beyond the first hundred.
std::string _listed(const std::map<std::string, std::uint64_t>& counts) {
  std::vector<std::pair<std::string, std::uint64_t>> names(counts.begin(), counts.end());
  std::stable_sort(names.begin(), names.end(), [](auto& a, auto& b) { return a.second > b.second; });
  constexpr std::size_t most_shown = 100;
  std::string text;
  for (std::size_t i = 0; i < names.size() && i < most_shown; ++i)
    text += fmt::format("  {:<22}{}\n", in_quotes(names[i].first), names[i].second);
  if (names.size() > most_shown) text += fmt::format("  and {} other names\n", names.size() - most_shown);
  return text;
}

}  // namespace

void ImportReport::Tags::add(std::string_view tag, const std::string& input, std::uint64_t line) {
  std::uint64_t* const count = known_words.get(tag, [&](std::string_view text) { return &count_of(words, text); });
  if (++*count == 1 && words.size() == most_distinct_tags + 1) overflow = {input, line};
}

bool ImportReport::Tags::too_many() const {
  return words.size() > most_distinct_tags;
}

std::string ImportReport::Tags::fault() const {
  return fmt::format("expected at most {} distinct tags, found {}; the first too many is at {}", most_distinct_tags,
                     words.size(), _place(overflow));
}

void ImportReport::add_input(const Conversion& conversion) {
  _formats.insert(_name(conversion.format));
  _tag_sources.insert(_tag_source(conversion));
  _relation_maps.insert(conversion.relations == nullptr
                            ? "kept"
                            : fmt::format("to functions ({})", printable(conversion.relations->name())));
}

void ImportReport::add_sentence(const TreebankSentence& sentence, const std::vector<DatafileWord>& words,
                                const std::string& input) {
  for (std::size_t i = 0; i < words.size(); ++i)
    _add_word(sentence.words[i], words[i], input);
  ++_sentences;
  if (words.size() > _most_words) {
    _most_words = words.size();
    _longest = {input, sentence.line};
  }
  if (const WidestNode widest = widest_node(sentence); widest.children > _most_children) {
    _most_children = widest.children;
    _widest = {input, widest.line};
  }
}

void ImportReport::_add_word(const TreebankWord& source, const DatafileWord& word, const std::string& input) {
  ++_words;
  const std::string_view kept = word.kept_lemma;
  _known_lemmas.get(kept, [&](std::string_view lemma) {
    add_text(_lemmas, lemma);
    return true;
  });
  if (word.lemma_is_form) ++_lemmas_from_forms;
  if (word.is_protected) ++_protected_lemmas;
  if (kept.size() < word.lemma.size()) ++_cut_lemmas;
  if (kept.empty()) ++_emptied_lemmas;
  _tags.add(word.tag, input, source.line);
  if (!_mask.empty()) _masked_tags.add(masked_tag(word.tag, _mask), input, source.line);
  if (word.is_odd_tag && ++_odd_tags == 1) _first_odd_tag = {input, source.line};
  if (word.has_unknown_values) {
    ++_words_with_unknown_values;
    _add_unknown_values(source.upos, source.feats);
  }
  if (word.relation_is_undefined)
    ++*_known_undefined.get(source.relation, [&](std::string_view name) { return &_undefined[std::string(name)]; });
}

void ImportReport::_add_unknown_values(std::string_view upos, std::string_view feats) {
  // Neither of them has a TAB.
  _key.assign(upos).append("\t").append(feats);
  const ValueCounts counts = _known_values.get(_key, [&](std::string_view) {
    ValueCounts values{};
    std::size_t size = 0;
    for (std::string& value : unknown_values(upos, feats))
      values.at(size++) = &_unknown_values[std::move(value)];
    return values;
  });
  for (std::size_t i = 0; i < counts.size() && counts[i] != nullptr; ++i)
    ++*counts[i];
}

void ImportReport::add_passed(const PassedRows& passed) {
  _passed.ranges += passed.ranges;
  _passed.empty_nodes += passed.empty_nodes;
}

std::string ImportReport::tag_fault() const {
  if (_mask.empty()) return _tags.too_many() ? _tags.fault() : "";
  return _masked_tags.too_many() ? fmt::format("under the mask {} {}", _mask, _masked_tags.fault()) : "";
}

std::string ImportReport::_lemma_lines() const {
  std::string text = _line("distinct lemmas", _lemmas.size());
  if (_lemmas.size() > most_distinct_lemmas)
    text += _continued(
        fmt::format("ngrex tells {} lemmas apart at most; some will be counted as the same", most_distinct_lemmas));
  text += _words_unless_zero("lemmas from forms", _lemmas_from_forms);
  if (_lemmas_from_forms > _words / 2)
    text += _continued("most lemmas are forms: every inflected form will be counted as a lemma of its own");
  text += _words_unless_zero("protected lemmas", _protected_lemmas);
  if (_cut_lemmas > 0)
    text += _line("cut lemmas", fmt::format("{} words, {} of them to nothing; --protect-lemmas keeps them whole",
                                            _cut_lemmas, _emptied_lemmas));
  return text;
}

std::string ImportReport::_tag_lines() const {
  std::string text = _line("tags", fmt::to_string(fmt::join(_tag_sources, "; ")));
  if (!_refusal.empty()) text += _continued(printable(_refusal));
  if (_odd_tags > 0)
    text += _continued(fmt::format("filled up or cut to the common length: {} words, the first at {}", _odd_tags,
                                   _place(_first_odd_tag)));
  if (_words_with_unknown_values > 0)
    text += _continued(fmt::format("values without a letter (?): {} words", _words_with_unknown_values)) +
            _listed(_unknown_values);
  text += _line("distinct tags", _tags.words.size());
  if (_tags.too_many())
    text += _continued(fmt::format("too many whole: ngrex -m holds {}; the first too many is at {}", most_distinct_tags,
                                   _place(_tags.overflow)));
  if (!_mask.empty()) {
    text += _line("distinct masked tags", fmt::format("{} under {}", _masked_tags.words.size(), _mask));
    if (_masked_tags.too_many())
      text += _continued(fmt::format("too many: ngrex -m {} ends with an error above {}; the first too many is at {}",
                                     _mask, most_distinct_tags, _place(_masked_tags.overflow)));
  }
  return text;
}

std::string ImportReport::_mask_lines() const {
  if (_tags.words.empty()) return "";
  const TagCounts tags(_tags.words.begin(), _tags.words.end());
  const std::string mask = best_mask(tags, most_distinct_tags);
  const TagInformation kept = tag_information(tags, mask);
  std::string text = _line("suggested mask", fmt::format("{} ({} distinct tags, {:.2f} of {:.2f} bits)", mask,
                                                         kept.distinct, kept.bits, tag_information(tags).bits));
  const bool made_from_features =
      _tag_sources.size() == 1 && *_tag_sources.begin() == _tag_source({.tag = TagSource::feats});
  std::vector<std::string_view> dropped;
  for (std::size_t p = 0; made_from_features && p < mask.size(); ++p)
    if (mask[p] == constants::insignificant_position_mark) dropped.push_back(position_name(p));
  if (!dropped.empty()) text += _continued(fmt::format("it leaves out {}", fmt::join(dropped, ", ")));
  return text;
}

std::string ImportReport::_relation_lines() const {
  std::string text = _line("relations", fmt::to_string(fmt::join(_relation_maps, "; ")));
  if (_undefined.empty()) return text;
  std::uint64_t total = 0;
  for (const auto& [name, count] : _undefined)
    total += count;
  return text + _line("relations to Undef", total) + _listed(_undefined);
}

std::string ImportReport::text() const {
  std::string text = _line("format", fmt::to_string(fmt::join(_formats, ", ")));
  text += _line("words", _words);
  text += _line("sentences", _sentences);
  text += _skipped == 0 ? _line("skipped sentences", _skipped)
                        : _line("skipped sentences", fmt::format("{} with {} words", _skipped, _skipped_words));
  if (_passed.ranges > 0) text += _line("multiword ranges", fmt::format("{} passed over", _passed.ranges));
  if (_passed.empty_nodes > 0) text += _line("empty nodes", fmt::format("{} passed over", _passed.empty_nodes));
  text += _lemma_lines() + _tag_lines() + _mask_lines() + _relation_lines();
  if (_most_children > 0)
    text += _line("widest node", fmt::format("{} children at {}", _most_children, _place(_widest)));
  if (_most_words > 0) text += _line("longest sentence", fmt::format("{} words at {}", _most_words, _place(_longest)));
  for (std::size_t i = 0; i < _list_notes.size(); ++i)
    text += _line(i == 0 ? "list" : "", printable(_list_notes[i]));
  return text;
}

}  // namespace colx
