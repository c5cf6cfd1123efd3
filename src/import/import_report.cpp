#include "import/import_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "import/lemma_protection.h"
#include "import/mask_search.h"
#include "import/tree_check.h"

namespace colx {

namespace {

// The most lemmas that the N-grams of ngrex can tell apart.
constexpr std::size_t most_lemmas = std::size_t{1} << 24;

std::string _place(const TreebankPlace& place) {
  return place.input + ":" + std::to_string(place.line);
}

}  // namespace

void ImportReport::_add_tag(std::unordered_set<std::string>& tags, const std::string& tag, TreebankPlace& overflow,
                            const TreebankPlace& place) {
  if (tags.insert(tag).second && tags.size() == most_distinct_tags + 1) overflow = place;
}

void ImportReport::add_word(std::string_view lemma, std::string_view tag, const TreebankPlace& place) {
  ++_words;
  _lemmas.emplace(kept_lemma(lemma));
  _add_tag(_tags, std::string(tag), _tag_overflow, place);
  if (!_mask.empty()) _add_tag(_masked_tags, masked_tag(tag, _mask), _masked_tag_overflow, place);
}

void ImportReport::add_sentence(const TreebankSentence& sentence, const std::string& input) {
  ++_sentences;
  if (sentence.words.size() > _most_words) {
    _most_words = sentence.words.size();
    _longest = {input, sentence.line};
  }
  if (const WidestNode widest = widest_node(sentence); widest.children > _most_children) {
    _most_children = widest.children;
    _widest = {input, widest.line};
  }
}

void ImportReport::add_passed(const PassedRows& passed) {
  _passed.ranges += passed.ranges;
  _passed.empty_nodes += passed.empty_nodes;
}

bool ImportReport::too_many_tags() const {
  return (_mask.empty() ? _tags : _masked_tags).size() > most_distinct_tags;
}

std::string ImportReport::text() const {
  std::string text;
  const auto line = [&](std::string_view name, const std::string& value) {
    text += fmt::format("{:<24}{}\n", name.empty() ? "" : std::string(name) + ":", value);
  };
  line("words", std::to_string(_words));
  line("sentences", std::to_string(_sentences));
  line("skipped sentences", std::to_string(_skipped));
  if (_passed.ranges > 0) line("multiword ranges", fmt::format("{} passed over", _passed.ranges));
  if (_passed.empty_nodes > 0) line("empty nodes", fmt::format("{} passed over", _passed.empty_nodes));
  line("distinct lemmas", std::to_string(_lemmas.size()));
  if (_lemmas.size() > most_lemmas) {
    line("", fmt::format("ngrex tells {} lemmas apart at most; some will be counted as the same", most_lemmas));
  }
  line("distinct tags", std::to_string(_tags.size()));
  if (!_mask.empty()) {
    line("distinct masked tags", fmt::format("{} under {}", _masked_tags.size(), _mask));
    if (_masked_tags.size() > most_distinct_tags) {
      line("", fmt::format("too many: ngrex -m {} ends with an error above {}; the first too many is at {}", _mask,
                           most_distinct_tags, _place(_masked_tag_overflow)));
    }
  }
  if (_tags.size() > most_distinct_tags) {
    std::vector<std::string> tags(_tags.begin(), _tags.end());
    std::sort(tags.begin(), tags.end());
    const std::string mask = best_mask(tags, most_distinct_tags);
    std::unordered_set<std::string> kept;
    for (const std::string& tag : tags)
      kept.insert(masked_tag(tag, mask));
    line("", fmt::format("too many whole: ngrex takes {}; the first too many is at {}", most_distinct_tags,
                         _place(_tag_overflow)));
    line("suggested mask", fmt::format("{} ({} distinct tags)", mask, kept.size()));
  }
  if (!_undefined.empty()) {
    std::uint64_t total = 0;
    std::vector<std::pair<std::string, std::uint64_t>> relations(_undefined.begin(), _undefined.end());
    for (const auto& [name, count] : relations)
      total += count;
    std::stable_sort(relations.begin(), relations.end(), [](auto& a, auto& b) { return a.second > b.second; });
    line("relations to Undef", std::to_string(total));
    for (const auto& [name, count] : relations)
      text += fmt::format("  {:<22}{}\n", quoted(name), count);
  }
  if (_most_children > 0) line("widest node", fmt::format("{} children at {}", _most_children, _place(_widest)));
  if (_most_words > 0) line("longest sentence", fmt::format("{} words at {}", _most_words, _place(_longest)));
  return text;
}

}  // namespace colx
